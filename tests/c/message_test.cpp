// Whole messages, digests and hexadecimal text: known answers.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "tests/c/client.h"
#include "tests/support/random_bytes.h"
#include "tests/support/vector_file.h"

namespace latchkey::test {
namespace {

class CVectorTest : public testing::TestWithParam<const char*> {};

// Lines of: provider, hash, cipher, password, plaintext, ciphertext, source.
TEST_P(CVectorTest, HoldsInBothDirections) {
  for (const VectorLine& line : ReadVectors(GetParam(), 7)) {
    SCOPED_TRACE(line.place);
    const auto number = [&](std::size_t field) {
      return static_cast<std::int32_t>(NumberOfField(line.fields[field]));
    };
    const std::int32_t provider = number(0) == 0 ? LATCHKEY_BASE : LATCHKEY_ENHANCED;
    const Key key =
        OpenKey(SettingsOf(number(1), number(2), provider), BytesOfField(line.fields[3]));
    const Bytes plaintext = BytesOfField(line.fields[4]);
    const Bytes ciphertext = BytesOfField(line.fields[5]);
    EXPECT_EQ(Encrypted(key, plaintext), ciphertext);
    EXPECT_EQ(Decrypted(key, ciphertext), plaintext);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, CVectorTest,
                         testing::Values("encryption.txt", "key_derivation.txt"),
                         [](const auto& file) {
                           const std::string name = file.param;
                           return name.substr(0, name.find('.'));
                         });

// Lines of: algorithm, repetitions, text repeated, value, source.
TEST(CDigestTest, VectorsHoldInOneCallAndInPieces) {
  const std::map<std::string, std::int32_t> hashes{
      {"MD5", LATCHKEY_MD5}, {"MD4", LATCHKEY_MD4}, {"MD2", LATCHKEY_MD2}, {"SHA1", LATCHKEY_SHA1}};
  for (const VectorLine& line : ReadVectors("hashes.txt", 5)) {
    SCOPED_TRACE(line.place);
    const std::int32_t hash = hashes.at(line.fields[0]);
    const Bytes text = BytesOfField(line.fields[2]);
    Hash pieces;
    ASSERT_EQ(latchkey_hash_open(hash, pieces.Address(), nullptr), LATCHKEY_OK);
    Bytes whole;
    for (std::uint32_t i = 0; i < NumberOfField(line.fields[1]); ++i) {
      whole.insert(whole.end(), text.begin(), text.end());
      ASSERT_EQ(latchkey_hash_update(pieces, text.data(), text.size(), nullptr), LATCHKEY_OK);
    }
    EXPECT_EQ(Hex(Digest(hash, whole).Result()), line.fields[3]);
    EXPECT_EQ(
        Hex(RunCall(20,
                    [&](std::uint8_t* digest, std::size_t* length, latchkey_failure* failure) {
                      return latchkey_hash_finish(pieces, digest, length, failure);
                    })
                .Result()),
        line.fields[3]);
  }
}

TEST(CDigestTest, UnknownHashesAreRefused) {
  for (const std::int32_t hash : {0, 5, -1, 65537, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Digest(hash, {}).reason, (Reason{LATCHKEY_BAD_HASH, 0, 0})) << hash;
    int notAHash = 0;
    auto* object = reinterpret_cast<latchkey_hash*>(&notAHash);
    EXPECT_EQ(latchkey_hash_open(hash, &object, nullptr), LATCHKEY_BAD_HASH);
    EXPECT_EQ(object, nullptr);
  }
}

TEST(CDigestTest, AfterFinishANewMessageBegins) {
  Hash hash;
  ASSERT_EQ(latchkey_hash_open(LATCHKEY_SHA1, hash.Address(), nullptr), LATCHKEY_OK);
  const auto finish = [&](std::size_t room = 20) {
    return RunCall(room, [&](std::uint8_t* digest, std::size_t* length, latchkey_failure* failure) {
      return latchkey_hash_finish(hash, digest, length, failure);
    });
  };
  const Bytes empty = Digest(LATCHKEY_SHA1, {}).Result();
  const Bytes text = BytesOf("abc");
  EXPECT_EQ(finish().Result(), empty) << "before the first update";
  ASSERT_EQ(latchkey_hash_update(hash, text.data(), text.size(), nullptr), LATCHKEY_OK);
  EXPECT_EQ(finish(19).status, LATCHKEY_BUFFER_TOO_SMALL);
  EXPECT_EQ(Hex(finish().Result()), "A9993E364706816ABA3E25717850C26C9CD0D89D");
  EXPECT_EQ(finish().Result(), empty);
}

TEST(CMessageTest, BlockCiphersAcceptEveryLengthAndPadToTheNextBlock) {
  RandomSource random(1);
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    const Key key = OpenKey(cipher);
    for (const std::size_t length : {0U, 1U, 7U, 8U, 9U, 255U, 256U, 4096U, 70001U}) {
      const Bytes plaintext = random.Some(length);
      const Bytes ciphertext = Encrypted(key, plaintext);
      EXPECT_EQ(ciphertext.size(), cipher == LATCHKEY_RC4 ? length : length / 8 * 8 + 8);
      EXPECT_EQ(Decrypted(key, ciphertext), plaintext) << cipher << ' ' << length;
    }
  }
}

TEST(CMessageTest, DamagedCiphertextsFailAndLeaveTheKeyAsItWas) {
  const Key key = OpenKey(LATCHKEY_3DES);
  const Bytes text = BytesOf("attack at dawn");
  const Bytes good = Encrypted(key, text);
  const Reason failed{LATCHKEY_CIPHER_FAILED, 717, 120};
  Bytes damaged = good;
  damaged[7] ^= 0xFF;  // the last byte of the padding becomes another
  EXPECT_EQ(Decrypt(key, damaged, 16).reason, failed);
  EXPECT_EQ(Decrypt(key, damaged, 3).reason, failed) << "in a small room too";
  EXPECT_EQ(Decrypt(key, std::span(good).first(15), 16).reason, failed);
  EXPECT_EQ(Decrypt(key, {}, 16).reason, failed);
  EXPECT_EQ(Decrypted(key, good), text);
}

TEST(CMessageTest, AWrongPasswordIsNoticedExceptUnderRc4) {
  const Bytes text = BytesOf("attack at dawn");
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    const latchkey_settings settings = SettingsOf(LATCHKEY_SHA1, cipher);
    const Output output =
        Decrypt(OpenKey(settings, "wrong"), Encrypted(OpenKey(settings), text), 64);
    if (cipher == LATCHKEY_RC4) {
      EXPECT_NE(output.Result(), text);
    } else {
      EXPECT_EQ(output.status, LATCHKEY_CIPHER_FAILED) << cipher;
    }
  }
}

TEST(CHexTest, EncodesUpperCaseWithAZeroAtTheEnd) {
  const auto encode = [](std::span<const std::uint8_t> bytes, std::size_t room) {
    return RunCall(room, [&](std::uint8_t* text, std::size_t* length, latchkey_failure* failure) {
      return latchkey_hex_encode(bytes.data(), bytes.size(), reinterpret_cast<char*>(text), length,
                                 failure);
    });
  };
  Bytes all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
  Bytes expected = BytesOf(Hex(all));
  expected.push_back(0);
  EXPECT_EQ(encode(all, 513).Result(), expected);
  EXPECT_EQ(encode({}, 1).Result(), Bytes{0});
  EXPECT_EQ(encode(all, 512).status, LATCHKEY_BUFFER_TOO_SMALL);
  EXPECT_EQ(encode(all, 512).length, 513U);
  EXPECT_EQ(encode({}, 0).length, 1U);
}

TEST(CHexTest, DecodesPairsUpToTheFirstCharacterThatIsNoDigit) {
  const auto decode = [](std::string_view text, std::size_t room = 64) {
    return RunCall(room, [&](std::uint8_t* bytes, std::size_t* length, latchkey_failure* failure) {
      return latchkey_hex_decode(text.data(), text.size(), bytes, length, failure);
    });
  };
  EXPECT_EQ(decode("00fFaB9").reason, (Reason{LATCHKEY_BAD_HEX, 727, 123}));
  EXPECT_EQ(decode("00fFaB90").Result(), (Bytes{0x00, 0xFF, 0xAB, 0x90}));
  EXPECT_EQ(decode("4g g4 zz 4").Result(), (Bytes{0x4, 0, 0x4, 0, 0x4}));
  EXPECT_EQ(decode("").Result(), Bytes{});
  EXPECT_EQ(decode("414243", 2).status, LATCHKEY_BUFFER_TOO_SMALL);
  EXPECT_EQ(decode("414243", 2).length, 3U);
}

TEST(CHexTest, DecodingReversesEncodingOfLongData) {
  for (const std::size_t size : {255U, 257U, 512U, 1000U, 70001U}) {
    const Bytes bytes = RandomSource(7).Some(size);
    std::string text(2 * size + 1, '?');
    std::size_t length = text.size();
    ASSERT_EQ(latchkey_hex_encode(bytes.data(), size, text.data(), &length, nullptr), LATCHKEY_OK);
    text.pop_back();
    EXPECT_EQ(text, Hex(bytes));
    Bytes decoded(size);
    length = size;
    ASSERT_EQ(latchkey_hex_decode(text.data(), text.size(), decoded.data(), &length, nullptr),
              LATCHKEY_OK);
    EXPECT_EQ(decoded, bytes);
  }
}

TEST(CRandomTest, SaltHasOnlyLettersAllEquallyOften) {
  std::string letters(100000, '?');
  ASSERT_EQ(latchkey_salt(letters.data(), letters.size(), nullptr), LATCHKEY_OK);
  std::map<char, int> counts;
  for (const char letter : letters) ++counts[letter];
  EXPECT_EQ(counts.size(), 52U);
  for (const auto& [letter, count] : counts) {
    EXPECT_TRUE((letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z')) << letter;
    EXPECT_NEAR(count, 1923, 350) << letter;  // 8 standard deviations
  }
  // A byte taken modulo 52 would give these 6,250 on average; 7,692 is right.
  EXPECT_GT(counts['w'] + counts['x'] + counts['y'] + counts['z'], 7000);
}

TEST(CRandomTest, BytesAreFilledToTheEndAndDiffer) {
  Bytes first(4096, kGuard);
  Bytes second(4096, kGuard);
  ASSERT_EQ(latchkey_random_bytes(first.data(), 4095, nullptr), LATCHKEY_OK);
  ASSERT_EQ(latchkey_random_bytes(second.data(), 4095, nullptr), LATCHKEY_OK);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.back(), kGuard);
  EXPECT_EQ(std::set(first.begin(), first.end()).size(), 256U);
  EXPECT_LT(std::count(first.end() - 33, first.end() - 1, 0), 8) << "the end is filled";
  EXPECT_EQ(latchkey_random_bytes(nullptr, 0, nullptr), LATCHKEY_OK);
  EXPECT_EQ(latchkey_salt(nullptr, 0, nullptr), LATCHKEY_OK);
}

}  // namespace
}  // namespace latchkey::test
