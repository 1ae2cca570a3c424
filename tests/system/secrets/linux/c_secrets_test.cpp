// Search for secrets after the C interface, which keeps data only in its objects.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "latchkey.h"
#include "tests/c/client.h"
#include "tests/system/secrets/known_results.h"
#include "tests/system/secrets/searched_service.h"

namespace latchkey::test {
namespace {

using CSecretsTest = SearchedService;

// Only the password, which the object of the fixture has.
constexpr auto kPasswordAlone = [](bool) { return Copies{1}; };

// Null when it cannot be opened.
Key OpenedKey(std::int32_t cipher, const WipedBytes& password) {
  const latchkey_settings settings = SettingsOf(LATCHKEY_MD5, cipher, LATCHKEY_ENHANCED);
  Key key;
  latchkey_key_open(&settings, password.data(), password.size(), key.Address(), nullptr);
  return key;
}

// Encrypts and decrypts again.
bool PassesThrough(std::int32_t cipher, const Secret& password, const Secret& plaintext) {
  const Key key = OpenedKey(cipher, password.Bytes());
  if (key == nullptr) return false;  // before the test itself copies the text
  const WipedBytes text = plaintext.Bytes();
  std::array<std::uint8_t, 64> ciphertext{};
  std::size_t length = ciphertext.size();
  WipedBytes again(ciphertext.size());
  std::size_t lengthAgain = again.size();
  return latchkey_encrypt(key, text.data(), text.size(), ciphertext.data(), &length, nullptr) ==
             LATCHKEY_OK &&
         latchkey_decrypt(key, ciphertext.data(), length, again.data(), &lengthAgain, nullptr) ==
             LATCHKEY_OK;
}

// The same in pieces.
bool Streams(std::int32_t cipher, const Secret& password, const Secret& plaintext) {
  const Key key = OpenedKey(cipher, password.Bytes());
  Stream stream;
  latchkey_stream_open(key, LATCHKEY_ENCRYPT, stream.Address(), nullptr);
  if (stream == nullptr) return false;
  bool done = true;
  const WipedBytes text = plaintext.Bytes();
  for (const std::uint8_t& byte : text) {
    std::array<std::uint8_t, 16> piece{};
    std::size_t length = piece.size();
    done = done &&
           latchkey_stream_update(stream, &byte, 1, piece.data(), &length, nullptr) == LATCHKEY_OK;
  }
  return done;
}

// The same for a batch of records: every second one is the text, the others are empty.
template <std::size_t kRecords>
bool PassesInRecords(std::int32_t cipher, const Secret& password, const Secret& plaintext) {
  const Key key = OpenedKey(cipher, password.Bytes());
  if (key == nullptr) return false;  // before the test itself copies the text
  const WipedBytes text = plaintext.Bytes();
  WipedBytes texts(text.size() * (kRecords / 2));
  std::array<std::int32_t, kRecords + 1> offsets{};
  for (std::size_t i = 0; i < kRecords; ++i) {
    const auto place = static_cast<std::size_t>(offsets[i]);
    if (i % 2 == 1) std::ranges::copy(text, texts.begin() + static_cast<std::ptrdiff_t>(place));
    offsets[i + 1] = static_cast<std::int32_t>(place + (i % 2 == 1 ? text.size() : 0));
  }
  const latchkey_records records{
      sizeof(latchkey_records), 4, kRecords, offsets.data(), texts.data(), texts.size()};
  WipedBytes bytes(texts.size() + kRecords * 8);
  std::array<std::int32_t, kRecords + 1> resultOffsets{};
  latchkey_results results{
      sizeof(latchkey_results), 4, resultOffsets.data(), bytes.data(), bytes.size(), nullptr, 0};
  return latchkey_encrypt_records(key, &records, 1, &results, nullptr) == LATCHKEY_OK;
}

using Passage = bool (*)(std::int32_t cipher, const Secret& password, const Secret& plaintext);

// Keys are derived from the digest of the password.
TEST_F(CSecretsTest, AfterEncryptionNeitherTextNorPasswordNorItsDigestIsLeft) {
  const Secret other = Secret::Random(16);
  search.Add(kResult, DigestOf(LATCHKEY_MD5, password));
  EXPECT_EQ(Count(), kNone);
  const std::vector<std::int32_t> all{LATCHKEY_RC4, LATCHKEY_RC2, LATCHKEY_DES, LATCHKEY_3DES,
                                      LATCHKEY_3DES_112};
  // Pieces and records are handled in one way for stream ciphers, in another for block ciphers.
  const std::vector<std::int32_t> some =
      std::getenv("LATCHKEY_LONG") != nullptr
          ? all
          : std::vector<std::int32_t>{LATCHKEY_RC4, LATCHKEY_3DES};
  struct Case {
    Passage passage;
    std::vector<std::int32_t> ciphers;
  };
  const std::vector<Case> cases{
      {&PassesThrough, all}, {&Streams, some}, {&PassesInRecords<3>, some}};
  for (const Case& each : cases) {
    for (const std::int32_t cipher : each.ciphers) {
      SCOPED_TRACE("cipher " + std::to_string(cipher));
      SearchAfterEveryEnding(
          other,
          [&](const clsCryptoAPI&) {
            return SucceedsInMemory([&] { return each.passage(cipher, password, plaintext); });
          },
          kPasswordAlone);
    }
  }
}

// With 600 records, the block ciphers encrypt many of them at a time.
TEST_F(CSecretsTest, AfterALargeBatchNeitherTextNorPasswordNorItsDigestIsLeft) {
  search.Add(kResult, DigestOf(LATCHKEY_MD5, password));
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    SCOPED_TRACE("cipher " + std::to_string(cipher));
    ASSERT_TRUE(PassesInRecords<600>(cipher, password, plaintext));
    EXPECT_EQ(Count(), kNone);
  }
}

// Makes the digest and the digits of the text, and reads the digits again.
bool IsConverted(const Secret& plaintext) {
  const WipedBytes text = plaintext.Bytes();
  WipedBytes digest(20);
  std::size_t digestLength = digest.size();
  WipedBytes digits(2 * text.size() + 1);
  std::size_t digitsLength = digits.size();
  WipedBytes again(text.size());
  std::size_t lengthAgain = again.size();
  return latchkey_digest(LATCHKEY_SHA1, text.data(), text.size(), digest.data(), &digestLength,
                         nullptr) == LATCHKEY_OK &&
         latchkey_hex_encode(text.data(), text.size(), reinterpret_cast<char*>(digits.data()),
                             &digitsLength, nullptr) == LATCHKEY_OK &&
         latchkey_hex_decode(reinterpret_cast<const char*>(digits.data()), digitsLength - 1,
                             again.data(), &lengthAgain, nullptr) == LATCHKEY_OK;
}

TEST_F(CSecretsTest, AfterDigestsAndDigitsNothingOfTextDigestOrDigitsIsLeft) {
  const Secret other = Secret::Random(16);
  search.Add(kResult, DigestOf(LATCHKEY_SHA1, plaintext));
  search.Add(kRandom, DigitsOf(plaintext));
  EXPECT_EQ(Count(), kNone);
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI&) { return SucceedsInMemory([&] { return IsConverted(plaintext); }); },
      kPasswordAlone);
}

// Random data is known when the provider returns it, and then searched for with its digits.
TEST_F(CSecretsTest, AfterRandomBytesNothingOfThemIsLeft) {
  const Secret other = Secret::Random(16);
  const Secret random = Secret::Random(48);
  provider.GiveRandom(random);
  search.Add(kRandom, random);
  search.Add(kResult, DigitsOf(random));
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI&) {
        return SucceedsInMemory([&] {
          WipedBytes bytes(48);
          return latchkey_random_bytes(bytes.data(), bytes.size(), nullptr) == LATCHKEY_OK;
        });
      },
      kPasswordAlone);
}

// The letters are searched for once they are known.
TEST_F(CSecretsTest, AfterASaltNothingOfItIsLeft) {
  const Secret letters = [&] {
    WipedBytes bytes(48);
    EXPECT_EQ(latchkey_salt(reinterpret_cast<char*>(bytes.data()), bytes.size(), nullptr),
              LATCHKEY_OK);
    return Secret(bytes);
  }();
  search.Add(kRandom, letters, SecretSearch::kLongPart);
  Expect(kNone, "after a salt of letters");
}

}  // namespace
}  // namespace latchkey::test
