// Search for secrets after the conversions and after the C interface, which keep no data of their
// clients.
#include "tests/system/secrets/c_interface.h"
#include "tests/system/secrets/searched_service.h"

namespace latchkey::test {
namespace {

using OtherSecretsTest = SearchedService;

// Only the password, which the object of the fixture has.
constexpr auto kPasswordAlone = [](bool) { return Copies{1}; };

// Without memory, a client's own copy may fail. Exceptions of the conversions are handled as in the
// interfaces.
template <class Body>
bool SucceedsInMemory(Body&& body) {
  return Guarded([&] { return body() ? LATCHKEY_OK : LATCHKEY_FAULT; }) == LATCHKEY_OK;
}

TEST_F(OtherSecretsTest, AfterTheConversionsNothingOfTheTextOrItsDigitsIsLeft) {
  const Secret other = Secret::Random(16);
  const auto convert = [&](const clsCryptoAPI& object) {
    const WipedText text = plaintext.Characters();
    const TextView given(text.data(), text.size());
    Text digits = object.ConvertStringToHex(given);
    const WipeAtExit wipeDigits(digits);
    Text back = object.ConvertStringFromHex(digits);
    const WipeAtExit wipeBack(back);
    const ByteArray array = object.StringToByteArray(given);
    Text again = object.ByteArrayToString(array);
    const WipeAtExit wipeAgain(again);
    return back == given && again == given;
  };
  search.Add(kResult, DigitsOf(plaintext));
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI& object) { return SucceedsInMemory([&] { return convert(object); }); },
      kPasswordAlone);
}

// Encrypts and decrypts again.
bool PassesThrough(std::int32_t cipher, const Secret& password, const Secret& plaintext) {
  const OpenCrypto crypto;
  const WipedBytes secret = password.Bytes();
  const WipedBytes text = plaintext.Bytes();
  const latchkey_key key{LATCHKEY_ENHANCED, LATCHKEY_MD5, cipher, 0, secret.data(), secret.size()};
  std::array<std::uint8_t, 64> ciphertext{};
  std::size_t length = ciphertext.size();
  WipedBytes again(ciphertext.size());
  std::size_t lengthAgain = again.size();
  return crypto.IsOpen() &&
         latchkey_encrypt(crypto.Get(), &key, text.data(), text.size(), ciphertext.data(),
                          &length) == LATCHKEY_OK &&
         latchkey_decrypt(crypto.Get(), &key, ciphertext.data(), length, again.data(),
                          &lengthAgain) == LATCHKEY_OK;
}

// Keys are derived from the digest of the password.
TEST_F(OtherSecretsTest, AfterEncryptionInCNeitherTextNorPasswordNorItsDigestIsLeft) {
  const Secret other = Secret::Random(16);
  search.Add(kResult, DigestOf(LATCHKEY_MD5, password));
  EXPECT_EQ(Count(), kNone);
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    SCOPED_TRACE("cipher " + std::to_string(cipher));
    SearchAfterEveryEnding(
        other,
        [&](const clsCryptoAPI&) {
          return SucceedsInMemory([&] { return PassesThrough(cipher, password, plaintext); });
        },
        kPasswordAlone);
  }
}

// Makes the digest and the digits of the text, and reads the digits again.
bool IsConverted(const Secret& plaintext) {
  const OpenCrypto crypto;
  const WipedBytes text = plaintext.Bytes();
  WipedBytes digest(20);
  std::size_t digestLength = digest.size();
  WipedBytes digits(2 * text.size() + 1);
  std::size_t digitsLength = digits.size();
  WipedBytes again(text.size());
  std::size_t lengthAgain = again.size();
  return crypto.IsOpen() &&
         latchkey_hash(crypto.Get(), LATCHKEY_SHA1, text.data(), text.size(), digest.data(),
                       &digestLength) == LATCHKEY_OK &&
         latchkey_hex_encode(text.data(), text.size(), reinterpret_cast<char*>(digits.data()),
                             &digitsLength) == LATCHKEY_OK &&
         latchkey_hex_decode(reinterpret_cast<const char*>(digits.data()), digitsLength - 1,
                             again.data(), &lengthAgain) == LATCHKEY_OK;
}

TEST_F(OtherSecretsTest, AfterDigestsAndDigitsInCNothingOfTextDigestOrDigitsIsLeft) {
  const Secret other = Secret::Random(16);
  search.Add(kResult, DigestOf(LATCHKEY_SHA1, plaintext));
  search.Add(kRandom, DigitsOf(plaintext));
  EXPECT_EQ(Count(), kNone);
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI&) { return SucceedsInMemory([&] { return IsConverted(plaintext); }); },
      kPasswordAlone);
}

// The functions of random data, which all write at most this much.
using RandomFunction = int (*)(latchkey_crypto* crypto, std::uint8_t* bytes, std::size_t* length);
constexpr std::size_t kRandomRoom = 512;

int RandomBytes(latchkey_crypto* crypto, std::uint8_t* bytes, std::size_t* /*length*/) {
  return latchkey_random_bytes(crypto, bytes, 48);
}

int RandomText(latchkey_crypto* crypto, std::uint8_t* bytes, std::size_t* length) {
  return latchkey_create_random(crypto, 0, 48, bytes, length);
}

int RandomDigits(latchkey_crypto* crypto, std::uint8_t* bytes, std::size_t* length) {
  return latchkey_create_random(crypto, LATCHKEY_EXACT_LENGTH | LATCHKEY_AS_HEX, 48, bytes, length);
}

int Salt(latchkey_crypto* crypto, std::uint8_t* bytes, std::size_t* length) {
  return latchkey_create_salt(crypto, 0, 48, bytes, length);
}

// Random data is known when the provider returns it, and then searched for with its digits.
TEST_F(OtherSecretsTest, AfterRandomDataInCNothingOfItIsLeft) {
  const Secret other = Secret::Random(16);
  const Secret random = Secret::Random(48);
  provider.GiveRandom(random);
  search.Add(kRandom, random);
  search.Add(kResult, DigitsOf(random));
  for (const RandomFunction function : {&RandomBytes, &RandomText, &RandomDigits, &Salt}) {
    SearchAfterEveryEnding(
        other,
        [&](const clsCryptoAPI&) {
          return SucceedsInMemory([&] {
            const OpenCrypto crypto;
            WipedBytes bytes(kRandomRoom);
            std::size_t length = bytes.size();
            return crypto.IsOpen() && function(crypto.Get(), bytes.data(), &length) == LATCHKEY_OK;
          });
        },
        kPasswordAlone);
  }
}

// The letters are searched for once they are known.
TEST_F(OtherSecretsTest, AfterASaltOfLettersInCNothingOfItIsLeft) {
  const Secret letters = [&] {
    const OpenCrypto crypto;
    WipedBytes bytes(48);
    std::size_t length = bytes.size();
    EXPECT_EQ(latchkey_create_salt(crypto.Get(), LATCHKEY_LETTERS_ONLY, 48, bytes.data(), &length),
              LATCHKEY_OK);
    return Secret(bytes);
  }();
  search.Add(kRandom, letters, SecretSearch::kLongPart);
  Expect(kNone, "after a salt of letters");
}

}  // namespace
}  // namespace latchkey::test
