// The stack after the ciphers' and hashes' kernels and the provider's wipe must not depend on a key
// or on plaintext.
#include <gtest/gtest.h>
#include <nettle/arctwo.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "base/stack_wipe.h"
#include "provider/portable/kernels/des_table_cipher.h"
#include "provider/portable/kernels/hashes.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "provider/portable/kernels/rc2_words.h"
#include "provider/portable/kernels/rc4_words.h"
#include "provider/portable/kernels/stream_messages.h"
#include "tests/support/cpu_levels.h"
#include "tests/support/linux/stack_residue.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the namespace under test

// The input of the kernels: two sets of random keys and data, one of which is in place.
class Work {
 public:
  static constexpr std::size_t kDataBytes = 2 * kLargestBatch;

  // `withData`, or only the keys: then the data is the same ciphertext in both.
  void Prepare(int which, bool withData) {
    RandomSource random(1000U + static_cast<unsigned>(which));
    const Bytes bytes = random.Some(24);
    des::ExpandKeys(bytes.data(), 3, desKey);
    arctwo_ctx expanded{};
    arctwo_set_key_ekb(&expanded, bytes.size(), bytes.data(), 128);
    std::copy_n(expanded.S, rc2Key.words.size(), rc2Key.words.begin());
    arcfour_set_key(&rc4State, bytes.size(), bytes.data());
    RandomSource others(withData ? 2000U + static_cast<unsigned>(which) : 2000U);
    const Bytes values = others.Some(data.size());
    std::copy(values.begin(), values.end(), data.begin());
    feedback.fill(0);
  }

  des::KeySchedule desKey{};
  Rc2Key rc2Key{};
  arcfour_ctx rc4State{};
  std::array<std::uint8_t, kDataBytes> data{};
  std::array<std::uint8_t, 8> feedback{};
};

Work work;

template <class Operation>
std::size_t ResidueOf(bool withData, Operation&& operation) {
  return DifferingStackBytes([=](int which) { work.Prepare(which, withData); }, operation);
}

// Runs the kernel and the provider's wipe, in a separate frame.
template <class Operation>
std::size_t ResidueAfterWipe(bool withData, Operation&& operation) {
  return ResidueOf(withData, [&] {
    operation();
    WipeStackBelow();
  });
}

constexpr bool kKeysAlone = false;
constexpr bool kKeysAndData = true;

[[gnu::noinline]] void LeaveData() {
  volatile std::array<std::uint8_t, 64> frame{};
  auto& bytes = const_cast<std::array<std::uint8_t, 64>&>(frame);
  std::copy_n(work.data.begin(), bytes.size(), bytes.begin());
  asm volatile("" ::"r"(&frame) : "memory");
}

TEST(KernelStackResidueTest, AFunctionsResidueIsFound) {
  EXPECT_GT(ResidueOf(kKeysAndData, &LeaveData), 0U);
  EXPECT_EQ(ResidueAfterWipe(kKeysAndData, &LeaveData), 0U);
}

TEST(KernelStackResidueTest, TheKernelsOfSingleBlocksLeaveNoSecretsAfterTheProvidersWipe) {
  std::uint8_t* const data = work.data.data();
  std::uint8_t* const feedback = work.feedback.data();
  constexpr std::size_t kSize = Work::kDataBytes;
  EXPECT_EQ(
      ResidueAfterWipe(kKeysAndData, [=] { des::EncryptCbc(work.desKey, data, kSize, feedback); }),
      0U);
  EXPECT_EQ(
      ResidueAfterWipe(kKeysAlone, [=] { des::DecryptCbc(work.desKey, data, kSize, feedback); }),
      0U);
  EXPECT_EQ(
      ResidueAfterWipe(kKeysAndData, [=] { rc2::EncryptCbc(work.rc2Key, data, kSize, feedback); }),
      0U);
  EXPECT_EQ(
      ResidueAfterWipe(kKeysAlone, [=] { rc2::DecryptCbc(work.rc2Key, data, kSize, feedback); }),
      0U);
  EXPECT_EQ(ResidueAfterWipe(kKeysAndData, [=] { AddRc4KeyStream(work.rc4State, work.data); }), 0U);
}

TEST(KernelStackResidueTest, ManyMessagesOfOneStreamLeaveNoSecretsAfterTheProvidersWipe) {
  static std::array<std::uint8_t, 400> results;
  static const std::array<std::uint32_t, 5> lengths{100, 7, 64, 0, 229};
  EXPECT_EQ(ResidueAfterWipe(kKeysAndData,
                             [] {
                               const std::span data(work.data);
                               AddStreamToEach(data.data() + 1000, data.first(400), lengths,
                                               results.data());
                             }),
            0U);
}

TEST(KernelStackResidueTest, TheHashesLeaveNoSecretsAfterTheProvidersWipe) {
  alignas(std::max_align_t) static std::array<std::uint8_t, 1024> context;
  static std::array<std::uint8_t, 20> digest;
  for (const nettle_hash* const hash : {&kMd4, &kMd5, &Sha1()}) {
    ASSERT_LE(hash->context_size, context.size());
    EXPECT_EQ(ResidueAfterWipe(kKeysAndData,
                               [=] {
                                 hash->init(context.data());
                                 hash->update(context.data(), work.data.size() - 5,
                                              work.data.data());
                                 hash->digest(context.data(), hash->digest_size, digest.data());
                               }),
              0U)
        << hash->name;
  }
}

using KernelBulkResidueTest = ::testing::TestWithParam<CpuLevel>;

// They use more of the stack than the provider wipes, so they wipe it themselves.
TEST_P(KernelBulkResidueTest, BulkDecryptionLeavesNoSecrets) {
  for (const std::size_t batches : {1U, 2U}) {
    EXPECT_EQ(ResidueOf(kKeysAlone,
                        [&] {
                          KernelsOf(GetParam())
                              .des.decrypt(work.desKey, work.data.data(), batches,
                                           work.feedback.data());
                        }),
              0U)
        << "3DES, " << batches << " batches";
    EXPECT_EQ(ResidueOf(kKeysAlone,
                        [&] {
                          KernelsOf(GetParam())
                              .rc2.decrypt(work.rc2Key, work.data.data(), batches,
                                           work.feedback.data());
                        }),
              0U)
        << "RC2, " << batches << " batches";
  }
}

// Returns the data as plaintext in each of the first two calls.
BlockSource PlaintextSource(int& calls) {
  return {[](void* context) noexcept {
            return ++*static_cast<int*>(context) <= 2 ? work.data.data() : nullptr;
          },
          &calls};
}

TEST_P(KernelBulkResidueTest, LaneEncryptionLeavesNoSecrets) {
  static int calls;
  EXPECT_EQ(ResidueOf(kKeysAndData,
                      [] {
                        calls = 0;
                        KernelsOf(GetParam()).des.encrypt(work.desKey, PlaintextSource(calls));
                      }),
            0U)
      << "3DES";
  EXPECT_EQ(ResidueOf(kKeysAndData,
                      [] {
                        calls = 0;
                        KernelsOf(GetParam()).rc2.encrypt(work.rc2Key, PlaintextSource(calls));
                      }),
            0U)
      << "RC2";
}

INSTANTIATE_TEST_SUITE_P(Levels, KernelBulkResidueTest, ::testing::ValuesIn(LevelsOfThisMachine()),
                         NameOfLevel);

}  // namespace
}  // namespace latchkey::test
