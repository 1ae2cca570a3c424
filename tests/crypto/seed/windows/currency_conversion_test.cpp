// Compares Currency's rounding with Automation's.
#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

#include <cmath>
#include <random>
#include <vector>

#include "crypto/seed/currency.h"
#include "tests/support/fault_of.h"
#include "tests/support/test_seed.h"

namespace latchkey::test {
namespace {

// Where 10,000 times the value has at most 53 bits, Automation's product is exact everywhere. In 32
// bits it is exact for every Double: the processor multiplies with 64 bits. Wine's 64-bit
// VarCyFromR8 rounds the product to a Double first, so longer values differ there.
constexpr int kExactBits = sizeof(void*) == 4 ? 53 : 39;

void ExpectAutomations(double value) {
  CY expected{};
  const HRESULT converted = VarCyFromR8(value, &expected);
  Currency found;
  const std::int32_t fault = FaultOf([&] { return found = Currency::FromDouble(value); });
  if (converted == DISP_E_OVERFLOW) {
    EXPECT_EQ(fault, 6) << std::hexfloat << value;
    return;
  }
  ASSERT_EQ(converted, S_OK);
  ASSERT_EQ(fault, kNoFault) << std::hexfloat << value;
  const std::int64_t whole = expected.int64 / 10'000;
  const auto rest = static_cast<double>(expected.int64 % 10'000);
  EXPECT_EQ(found, Currency::FromWhole(whole) + Currency::FromDouble(rest / 10'000))
      << std::hexfloat << value;
}

TEST(CurrencyConversionTest, RandomValuesRoundAsInAutomation) {
  auto random = Seeded<std::mt19937_64>(TestSeed(20250101));
  for (int i = 0; i < 200'000; ++i) {
    const auto bits = static_cast<double>(random() >> (64 - kExactBits));
    const int exponent = static_cast<int>(random() % 80) - 70;
    const double value = std::ldexp(bits, exponent);
    ExpectAutomations(random() % 2 != 0 ? value : -value);
  }
}

TEST(CurrencyConversionTest, HalvesAndLimitsRoundAsInAutomation) {
  for (int thirtySeconds = -2000; thirtySeconds <= 2000; ++thirtySeconds) {
    ExpectAutomations(thirtySeconds / 32.0);
  }
  std::vector<double> edges{922337203685478.0, 1e15, 1e300};
  if (kExactBits == 53) edges.insert(edges.end(), {922337203685477.5, 922337203685477.625});
  for (const double edge : edges) {
    ExpectAutomations(edge);
    ExpectAutomations(-edge);
  }
}

}  // namespace
}  // namespace latchkey::test
