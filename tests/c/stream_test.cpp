// Messages in pieces.
#include <gtest/gtest.h>

#include "tests/c/client.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

// The whole result of a message that is split at random, with exactly the room that each step
// needs.
Bytes InPieces(latchkey_stream* stream, std::span<const std::uint8_t> message,
               RandomSource& random) {
  Bytes result;
  const auto append = [&](const Bytes& part) {
    result.insert(result.end(), part.begin(), part.end());
  };
  while (!message.empty()) {
    const auto piece = message.first(std::min(message.size(), random.Below(20)));
    message = message.subspan(piece.size());
    append(Update(stream, piece, piece.size() + 8).Result());
  }
  append(Finish(stream).Result());
  return result;
}

TEST(CStreamTest, EverySplitGivesTheResultOfOneCall) {
  RandomSource random(2);
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    const Key key = OpenKey(cipher);
    const Stream encryption = OpenStream(key, LATCHKEY_ENCRYPT);
    const Stream decryption = OpenStream(key, LATCHKEY_DECRYPT);
    for (std::size_t length = 0; length < 200; ++length) {
      const Bytes message = random.Some(length);
      const Bytes ciphertext = Encrypted(key, message);
      ASSERT_EQ(InPieces(encryption, message, random), ciphertext) << cipher << ' ' << length;
      ASSERT_EQ(InPieces(decryption, ciphertext, random), message) << cipher << ' ' << length;
    }
  }
}

TEST(CStreamTest, LargePiecesGiveTheResultOfOneCall) {
  RandomSource random(3);
  const Bytes message = random.Some(300001);
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    const Key key = OpenKey(cipher);
    const Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
    Bytes result = Update(stream, std::span(message).first(3), 11).Result();
    for (const auto& part :
         {Update(stream, std::span(message).subspan(3), message.size() + 8).Result(),
          Finish(stream).Result()}) {
      result.insert(result.end(), part.begin(), part.end());
    }
    EXPECT_EQ(result, Encrypted(key, message)) << cipher;
  }
}

TEST(CStreamTest, HoldsBackWhatMayBePadding) {
  const Key key = OpenKey(LATCHKEY_DES);
  const Bytes message = SampleBytes(16);
  const Bytes ciphertext = Encrypted(key, message);
  const Stream encryption = OpenStream(key, LATCHKEY_ENCRYPT);
  EXPECT_EQ(Update(encryption, std::span(message).first(7), 0).length, 0U);
  EXPECT_EQ(Update(encryption, std::span(message).subspan(7), 16).length, 16U);
  EXPECT_EQ(Finish(encryption).length, 8U);
  const Stream decryption = OpenStream(key, LATCHKEY_DECRYPT);
  EXPECT_EQ(Update(decryption, std::span(ciphertext).first(8), 0).length, 0U);
  EXPECT_EQ(Update(decryption, std::span(ciphertext).subspan(8, 1), 8).length, 8U);
  EXPECT_EQ(Update(decryption, std::span(ciphertext).subspan(9), 8).length, 8U);
  EXPECT_EQ(Finish(decryption).length, 0U);
}

TEST(CStreamTest, WithTooLittleRoomNothingIsAdded) {
  const Key key = OpenKey(LATCHKEY_RC2);
  const Bytes message = SampleBytes(20);
  const Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
  for (const std::size_t room : {0U, 15U}) {
    const Output output = Update(stream, message, room);
    EXPECT_EQ(output.reason, (Reason{LATCHKEY_BUFFER_TOO_SMALL, 0, 0}));
    EXPECT_EQ(output.length, 16U);
  }
  Bytes result = Update(stream, message, 16).Result();
  const Output tooSmall = Finish(stream, 7);
  EXPECT_EQ(tooSmall.status, LATCHKEY_BUFFER_TOO_SMALL);
  EXPECT_EQ(tooSmall.length, 8U);
  const Bytes rest = Finish(stream).Result();
  result.insert(result.end(), rest.begin(), rest.end());
  EXPECT_EQ(result, Encrypted(key, message));
}

TEST(CStreamTest, ABadMessageEndsTheStream) {
  const Key key = OpenKey(LATCHKEY_RC2);
  const Reason failed{LATCHKEY_CIPHER_FAILED, 717, 120};
  const Bytes piece = SampleBytes(9);
  const Stream stream = OpenStream(key, LATCHKEY_DECRYPT);
  ASSERT_EQ(Update(stream, piece, 8).status, LATCHKEY_OK);
  EXPECT_EQ(Finish(stream).reason, failed) << "one byte after the last block";
  for (const std::size_t room : {0U, 64U}) {
    EXPECT_EQ(Update(stream, piece, room).reason, failed) << room;
    EXPECT_EQ(Update(stream, {}, room).reason, failed) << room;
    EXPECT_EQ(Finish(stream, room).reason, failed) << room;
  }
}

TEST(CStreamTest, DecryptingNothingFailsExceptUnderRc4) {
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    const Stream stream = OpenStream(OpenKey(cipher), LATCHKEY_DECRYPT);
    EXPECT_EQ(Finish(stream).status, cipher == LATCHKEY_RC4 ? LATCHKEY_OK : LATCHKEY_CIPHER_FAILED);
  }
}

TEST(CStreamTest, BadArgumentsLeaveItAsItWas) {
  const Key key = OpenKey(LATCHKEY_RC2);
  const Bytes message = SampleBytes(24);
  const Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
  Bytes result = Update(stream, std::span(message).first(10), 8).Result();
  std::size_t length = 8;
  EXPECT_EQ(latchkey_stream_update(stream, nullptr, 1, result.data(), &length, nullptr),
            LATCHKEY_BAD_ARGUMENT);
  EXPECT_EQ(latchkey_stream_finish(stream, result.data(), nullptr, nullptr), LATCHKEY_BAD_ARGUMENT);
  for (const Bytes& part :
       {Update(stream, std::span(message).subspan(10), 16).Result(), Finish(stream).Result()}) {
    result.insert(result.end(), part.begin(), part.end());
  }
  EXPECT_EQ(result, Encrypted(key, message));
}

TEST(CStreamTest, MayOutliveItsKey) {
  Key key = OpenKey(LATCHKEY_DES);
  const Bytes expected = Encrypted(key, BytesOf("abc"));
  const Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
  key = Key();
  ASSERT_EQ(Update(stream, BytesOf("abc"), 8).status, LATCHKEY_OK);
  EXPECT_EQ(Finish(stream).Result(), expected);
}

TEST(CStreamTest, StreamsOfOneKeyDoNotAffectEachOther) {
  const Key key = OpenKey(LATCHKEY_RC4);
  const Stream first = OpenStream(key, LATCHKEY_ENCRYPT);
  const Stream second = OpenStream(key, LATCHKEY_ENCRYPT);
  const Bytes message = SampleBytes(40);
  for (std::size_t i = 0; i < message.size(); ++i) {
    const auto byte = std::span(message).subspan(i, 1);
    EXPECT_EQ(Update(first, byte, 1).Result(), Update(second, byte, 1).Result());
  }
}

TEST(CStreamTest, OtherDirectionsAreRefused) {
  const Key key = OpenKey();
  int notAStream = 0;
  for (const std::int32_t direction : {0, 3, -1}) {
    auto* stream = reinterpret_cast<latchkey_stream*>(&notAStream);
    EXPECT_EQ(latchkey_stream_open(key, direction, &stream, nullptr), LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(stream, nullptr);
  }
}

}  // namespace
}  // namespace latchkey::test
