// A message in pieces of any lengths.
#include "crypto/engine/message_stream.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/crypto/engine/whole_message.h"
#include "tests/support/bytes.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

class MessageStreamTest : public testing::TestWithParam<std::int32_t> {
 protected:
  void SetUp() override { ASSERT_EQ(key.Derive({1, GetParam()}, BytesOf("pw")), nullptr); }

  // Adds the next `length` bytes and appends their result.
  static bool Add(MessageStream& stream, std::span<const std::uint8_t> piece, Bytes& result) {
    Bytes part(stream.ReadyLength(piece.size()), 0xEE);
    EXPECT_LE(part.size(), piece.size() + MessageStream::kMostAdded);
    const bool added = stream.Update(piece, part);
    if (!added) {
      EXPECT_EQ(std::count(part.begin(), part.end(), 0), std::ssize(part));
    }
    result.insert(result.end(), part.begin(), part.end());
    return added;
  }
  static bool Finish(MessageStream& stream, Bytes& result) {
    std::array<std::uint8_t, MessageStream::kMostAdded> rest{};
    std::uint32_t length = 0;
    if (!stream.Finish(rest, length)) return false;
    result.insert(result.end(), rest.begin(), rest.begin() + length);
    return true;
  }

  Bytes InPieces(MessageStream& stream, const Bytes& message) {
    Bytes result;
    std::span<const std::uint8_t> rest = message;
    while (!rest.empty()) {
      const std::size_t size = std::min<std::size_t>(random.Below(20), rest.size());
      EXPECT_TRUE(Add(stream, rest.first(size), result));
      rest = rest.subspan(size);
    }
    EXPECT_TRUE(Finish(stream, result));
    return result;
  }

  DerivedKey key;
  RandomSource random{20263};
};

TEST_P(MessageStreamTest, PiecesGiveTheBytesOfTheWholeAndTheStreamBeginsAgain) {
  MessageStream encryption(key, CipherDirection::Encrypt);
  MessageStream decryption(key, CipherDirection::Decrypt);
  for (std::size_t length = 0; length < 100; ++length) {
    const Bytes message = random.Some(length);
    const Bytes expected = Whole(key, CipherDirection::Encrypt, message);
    ASSERT_EQ(InPieces(encryption, message), expected) << length;
    ASSERT_EQ(InPieces(decryption, expected), message) << length;
  }
}

// Every message is good for RC4.
using BlockMessageStreamTest = MessageStreamTest;

TEST_P(BlockMessageStreamTest, ABadMessageEndsTheStream) {
  for (const std::size_t length : {0U, 7U, 9U}) {
    MessageStream stream(key, CipherDirection::Decrypt);
    Bytes result;
    EXPECT_TRUE(Add(stream, Bytes(length), result));
    EXPECT_FALSE(Finish(stream, result)) << length;
    EXPECT_FALSE(stream.IsGood());
    EXPECT_FALSE(Add(stream, Bytes(16), result));
    EXPECT_FALSE(Finish(stream, result));
  }
}

INSTANTIATE_TEST_SUITE_P(Ciphers, MessageStreamTest, testing::Values(1, 2, 3, 4, 5));
INSTANTIATE_TEST_SUITE_P(Ciphers, BlockMessageStreamTest, testing::Values(2, 3, 4, 5));

}  // namespace
}  // namespace latchkey::test
