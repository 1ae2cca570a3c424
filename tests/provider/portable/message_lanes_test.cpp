// Encryption of many messages at once, by each kernel.
#include "provider/portable/message_lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "provider/portable/kernels/des_table_cipher.h"
#include "provider/portable/kernels/rc2_words.h"
#include "tests/support/cpu_levels.h"
#include "tests/support/freed_memory.h"
#include "tests/support/linux/kernel_keys.h"
#include "tests/support/linux/reference_cipher.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the namespace under test

class MessageLanesTest : public ::testing::TestWithParam<CpuLevel> {
 protected:
  // Random messages at any address, in place: each ciphertext must be right, and the bytes around
  // them unchanged.
  template <class Key, class EncryptCbc>
  void ExpectReference(AlgorithmId id, const LaneKernels<Key>& kernel, Key (*keyOf)(const Bytes&),
                       EncryptCbc&& encryptCbc) {
    for (int round = 0; round < 60; ++round) {
      const Bytes key = random.Some(ReferenceKeySize(id));
      const auto lengths = RandomLengths(kernel.lanes);
      const std::size_t offset = random.Below(64);
      Bytes memory = random.Some(offset);
      Bytes expected = memory;
      for (const std::uint32_t length : lengths) Add(id, key, length, memory, expected);
      const Bytes after = random.Some(8);
      for (Bytes* const bytes : {&memory, &expected}) {
        bytes->insert(bytes->end(), after.begin(), after.end());
      }
      const Key expanded = keyOf(key);
      MessageLanes lanes(lengths, memory.data() + offset);
      lanes.Run(expanded, kernel);
      lanes.Complete([&](std::uint8_t* data, std::size_t length, std::uint8_t* feedback) {
        encryptCbc(expanded, data, length, feedback);
      });
      ASSERT_TRUE(memory == expected) << lengths.size() << " messages, offset " << offset;
    }
  }

  // The lengths of up to three times as many messages as lanes: most of them of 1 to 6 blocks,
  // about one in a hundred of up to 60.
  std::vector<std::uint32_t> RandomLengths(std::size_t lanes) {
    const std::size_t most = 1 + random.Below(6);
    std::vector<std::uint32_t> lengths(random.Below(3 * lanes + 2));
    for (std::uint32_t& length : lengths) {
      const std::size_t blocks = random.Below(100) == 0 ? random.Below(60) : random.Below(most);
      length = static_cast<std::uint32_t>(8 * (1 + blocks));
    }
    return lengths;
  }

  void Add(AlgorithmId id, const Bytes& key, std::size_t length, Bytes& memory, Bytes& expected) {
    const Bytes plaintext = random.Some(length);
    const Bytes ciphertext = ReferenceEncryption(id, key, Bytes(8), plaintext);
    memory.insert(memory.end(), plaintext.begin(), plaintext.end());
    expected.insert(expected.end(), ciphertext.begin(), ciphertext.end());
  }

  RandomSource random{20265};
};

TEST_P(MessageLanesTest, DesEncryptionEqualsTheReference) {
  ExpectReference(kAlgorithmDes, KernelsOf(GetParam()).des, &DesKeyOf, &des::EncryptCbc);
}

TEST_P(MessageLanesTest, TripleDesEncryptionEqualsTheReference) {
  ExpectReference(kAlgorithm3Des, KernelsOf(GetParam()).des, &DesKeyOf, &des::EncryptCbc);
}

TEST_P(MessageLanesTest, Rc2EncryptionEqualsTheReference) {
  ExpectReference(kAlgorithmRc2, KernelsOf(GetParam()).rc2, &Rc2KeyOf, &rc2::EncryptCbc);
}

// The tests above would pass even if Complete encrypted all messages.
TEST_P(MessageLanesTest, TheKernelEncryptsMessagesOfOneLength) {
  std::vector<std::uint32_t> lengths(2 * kMostLanes, 24);
  Bytes data(lengths.size() * 24, 0x5A);
  MessageLanes lanes(lengths, data.data());
  lanes.Run(DesKeyOf(Bytes(8, 1)), KernelsOf(GetParam()).des);
  lanes.Complete([](std::uint8_t*, std::size_t, std::uint8_t*) { FAIL() << "a message is left"; });
}

TEST(MessageLanesWipeTest, NoBlockIsLeftInFreedMemory) {
  RandomSource random{20267};
  Bytes data = random.Some(16);
  const Bytes plaintext(data.begin() + 8, data.end());
  const std::vector<std::uint32_t> lengths{8, 8};
  const FreedMemory freed(plaintext);
  {
    MessageLanes lanes(lengths, data.data());
    // Takes no block, so that the plaintext stays in the lanes.
    lanes.Run(Rc2Key{},
              LaneKernels<Rc2Key>{nullptr, [](const Rc2Key&, const BlockSource&) noexcept {},
                                  kMostLanes, 1, 1});
  }
  EXPECT_EQ(freed.BlocksWithSecret(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Levels, MessageLanesTest, ::testing::ValuesIn(LevelsOfThisMachine()),
                         NameOfLevel);

}  // namespace
}  // namespace latchkey::test
