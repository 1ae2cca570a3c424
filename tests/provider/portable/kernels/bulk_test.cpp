#include <gtest/gtest.h>

#include <algorithm>

#include "provider/portable/kernels/des_table_cipher.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "provider/portable/kernels/rc2_words.h"
#include "tests/support/cpu_levels.h"
#include "tests/support/linux/kernel_keys.h"
#include "tests/support/linux/reference_cipher.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the namespace under test

class KernelBulkTest : public ::testing::TestWithParam<CpuLevel> {
 protected:
  // Random keys and feedback, one to three batches at any address, in place: the plaintext must be
  // right, the feedback updated, and the bytes around the data unchanged.
  template <class Key>
  void ExpectReference(AlgorithmId id, const LaneKernels<Key>& kernels, Key (*keyOf)(const Bytes&),
                       int rounds) {
    for (int round = 0; round < rounds; ++round) {
      const Bytes key = random.Some(ReferenceKeySize(id));
      const Bytes feedback = random.Some(8);
      const std::size_t batches = 1 + random.Below(3);
      const Bytes plaintext = random.Some(batches * kernels.lanes * 8);
      const Bytes ciphertext = ReferenceEncryption(id, key, feedback, plaintext);
      const std::size_t offset = random.Below(64);
      const Bytes around = random.Some(offset + ciphertext.size() + 8);
      Bytes memory = around;
      const auto data = memory.begin() + static_cast<std::ptrdiff_t>(offset);
      std::copy(ciphertext.begin(), ciphertext.end(), data);
      Bytes chain = feedback;
      kernels.decrypt(keyOf(key), &*data, batches, chain.data());
      Bytes expected = around;
      std::copy(plaintext.begin(), plaintext.end(),
                expected.begin() + static_cast<std::ptrdiff_t>(offset));
      ASSERT_TRUE(memory == expected) << "offset " << offset << ", batches " << batches;
      ASSERT_EQ(chain, Bytes(ciphertext.end() - 8, ciphertext.end()));
    }
  }

  RandomSource random{20261};
};

TEST_P(KernelBulkTest, DesDecryptionEqualsTheReference) {
  ExpectReference(kAlgorithmDes, KernelsOf(GetParam()).des, &DesKeyOf, 40);
}

TEST_P(KernelBulkTest, TripleDesDecryptionEqualsTheReference) {
  ExpectReference(kAlgorithm3Des, KernelsOf(GetParam()).des, &DesKeyOf, 40);
}

TEST_P(KernelBulkTest, Rc2DecryptionEqualsTheReference) {
  ExpectReference(kAlgorithmRc2, KernelsOf(GetParam()).rc2, &Rc2KeyOf, 100);
}

INSTANTIATE_TEST_SUITE_P(Levels, KernelBulkTest, ::testing::ValuesIn(LevelsOfThisMachine()),
                         NameOfLevel);

}  // namespace
}  // namespace latchkey::test
