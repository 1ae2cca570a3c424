// Runs each function of the C interface with its first, second, ... allocation failing, and with
// each of its provider calls refused and faulted. Checks status and location, the outputs, leaks,
// and the next call of the function.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "tests/c/client.h"
#include "tests/c/functions.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/module_scope.h"
#include "tests/support/sweep.h"

namespace latchkey::test {
namespace {

constexpr Reason kNoProvider{LATCHKEY_NO_PROVIDER, 720, 114};
constexpr Reason kNoHash{LATCHKEY_KEY_FAILED, 721, 117};
constexpr Reason kNoHashData{LATCHKEY_KEY_FAILED, 722, 118};
constexpr Reason kNoKey{LATCHKEY_KEY_FAILED, 723, 119};
constexpr Reason kNotEncrypted{LATCHKEY_CIPHER_FAILED, 724, 122};
constexpr Reason kNotDecrypted{LATCHKEY_CIPHER_FAILED, 717, 120};
constexpr Reason kRefused{LATCHKEY_PROVIDER_REFUSED, 0, 0};

struct Less {
  bool operator()(const Reason& left, const Reason& right) const {
    return std::tie(left.status, left.location) < std::tie(right.status, right.location);
  }
};
using Reasons = std::set<Reason, Less>;

// The location of a fault in a function, and the failures that refused provider calls cause.
struct Expected {
  std::int32_t trap;
  Reasons refusals;
};
const std::map<std::string, Expected> kExpected{
    {"key_open", {438, {kNoProvider, kNoHash, kNoHashData, kNoKey}}},
    {"encrypt", {438, {kNotEncrypted}}},
    {"decrypt", {436, {kNotDecrypted}}},
    {"decrypt into a small room", {436, {kNotDecrypted}}},
    {"stream, encrypting", {438, {kNoKey, kNotEncrypted}}},
    {"stream, decrypting", {436, {{LATCHKEY_KEY_FAILED, 716, 119}, kNotDecrypted}}},
    {"encrypt_records", {438, {kNotEncrypted}}},
    {"decrypt_records", {436, {kNotDecrypted}}},
    {"identify", {436, {}}},  // skips settings that the provider refuses
    {"digest", {432, {{LATCHKEY_NO_PROVIDER, 709, 117}, kRefused}}},
    {"hash", {432, {{LATCHKEY_NO_PROVIDER, 709, 117}, kRefused}}},
    {"random_bytes", {433, {{LATCHKEY_NO_PROVIDER, 710, 114}, kRefused}}},
    {"salt", {433, {{LATCHKEY_NO_PROVIDER, 710, 114}, kRefused}}},
    {"hex_encode", {441, {}}},
    {"hex_decode", {440, {}}},
};

class EveryCFailureTest : public testing::TestWithParam<std::int32_t> {
 protected:
  EveryCFailureTest() { provider::ReplaceSharedCryptoProvider(&provider); }
  ~EveryCFailureTest() override {
    provider::ReplaceSharedCryptoProvider(nullptr);
    EXPECT_EQ(provider.OpenHandles(), 0);
  }

  // Calls the function with its nth allocation or provider call failing, for n = 1, 2, ... `arm`
  // arranges the failure, and `disarm` returns whether it happened. Returns the reasons that the
  // function gave.
  template <class Arm, class Disarm>
  Reasons Sweep(const CFunction& function, Arm&& arm, Disarm&& disarm) {
    SCOPED_TRACE(function.name);
    EXPECT_EQ(function.call(nullptr), LATCHKEY_OK);
    Reasons reasons;
    failures += FailEachInTurn([&](int nth) {
      const long blocks = LiveBlocks();
      const int handles = provider.OpenHandles();
      latchkey_failure failure = LATCHKEY_FAILURE_INIT;
      arm(nth);
      const std::int32_t status = function.call(&failure);
      const bool failed = disarm();
      EXPECT_EQ(LiveBlocks(), blocks) << "blocks left";
      EXPECT_EQ(provider.OpenHandles(), handles) << "handles left";
      EXPECT_EQ(provider.ClosedTwice(), 0);
      EXPECT_EQ(failure.status, status);
      EXPECT_TRUE(failed || status == LATCHKEY_OK);
      if (status != LATCHKEY_OK) reasons.insert(ReasonOf(failure));
      EXPECT_EQ(function.call(nullptr), LATCHKEY_OK) << "the call after the failure";
      return failed;
    });
    return reasons;
  }

  Reasons SweepAllocations(const CFunction& function) {
    return Sweep(function, FailAllocation, [] {
      const bool failed = !AllocationFailurePending();
      FailAllocation(0);
      return failed;
    });
  }

  Reasons SweepProviderCalls(const CFunction& function, FaultyProvider::Manner manner) {
    return Sweep(
        function, [&](int nth) { provider.FailCall(nth, manner); },
        [&] {
          const bool failed = !provider.FailurePending();
          provider.FailCall(0, manner);
          return failed;
        });
  }

  ModuleScope scope;
  FaultyProvider provider;
  int failures = 0;
};

TEST_P(EveryCFailureTest, AFailedAllocationReturnsNoMemoryAndLeavesNothing) {
  const auto functions = AllCFunctions(GetParam());
  ASSERT_EQ(functions.size(), kExpected.size());
  for (const CFunction& function : functions) {
    const Reason noMemory{LATCHKEY_NO_MEMORY, kExpected.at(function.name).trap, 7};
    const Reasons reasons = SweepAllocations(function);
    EXPECT_TRUE(reasons.empty() || reasons == Reasons{noMemory}) << function.name;
  }
  std::printf("%d allocations failed in turn\n", failures);
  EXPECT_GT(failures, 60);
}

// The same on the system's own provider, whose allocations are those of the library.
TEST_P(EveryCFailureTest, AFailedAllocationOfTheSystemsProviderLeavesNothing) {
  provider::ReplaceSharedCryptoProvider(nullptr);
  for (const CFunction& function : AllCFunctions(GetParam())) {
    const Reason noMemory{LATCHKEY_NO_MEMORY, kExpected.at(function.name).trap, 7};
    const Reasons reasons = SweepAllocations(function);
    EXPECT_TRUE(reasons.empty() || reasons == Reasons{noMemory}) << function.name;
  }
  std::printf("%d allocations failed in turn\n", failures);
}

TEST_P(EveryCFailureTest, AFailedProviderCallIsReportedAtItsLocation) {
  for (const CFunction& function : AllCFunctions(GetParam())) {
    const auto& [trap, refusals] = kExpected.at(function.name);
    EXPECT_EQ(SweepProviderCalls(function, FaultyProvider::Manner::Refuse), refusals)
        << function.name;
    const Reason fault{LATCHKEY_FAULT, trap, 13};
    const bool usesProvider = function.name.find("hex") == std::string::npos;
    EXPECT_EQ(SweepProviderCalls(function, FaultyProvider::Manner::Throw),
              usesProvider ? Reasons{fault} : Reasons{})
        << function.name;
  }
  std::printf("%d calls failed in turn\n", failures);
}

INSTANTIATE_TEST_SUITE_P(Ciphers, EveryCFailureTest,
                         testing::Values(LATCHKEY_RC4, LATCHKEY_RC2, LATCHKEY_DES, LATCHKEY_3DES));

}  // namespace
}  // namespace latchkey::test
