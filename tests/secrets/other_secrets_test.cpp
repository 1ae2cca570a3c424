// What is left of secrets after the conversions, which hold nothing, and after the C interface,
// whose clients hold everything themselves.
#include "com/c_call.h"
#include "tests/secrets/searched_service.h"

namespace latchkey::test {
namespace {

using OtherSecretsTest = SearchedService;
using platform::WipeAtExit;
using platform::WipedBytes;

// Only the password, which the object of the fixture has.
constexpr auto kPasswordAlone = [](bool) { return Copies{1}; };

// Out of memory, a client's own copy may be what fails. What the conversions raise ends as it does
// in the interfaces.
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
  const Secret digits = [&] {
    const WipedText text = plaintext.Characters();
    Text result = clsCryptoAPI().ConvertStringToHex({text.data(), text.size()});
    const WipeAtExit wipeResult(result);
    return Secret(result);
  }();
  search.Add(kResult, digits);
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI& object) { return SucceedsInMemory([&] { return convert(object); }); },
      kPasswordAlone);
}

// A handle of the C interface for one scope.
class OpenCrypto {
 public:
  OpenCrypto() : status_(latchkey_crypto_open(&crypto_)) {}
  OpenCrypto(const OpenCrypto&) = delete;
  OpenCrypto& operator=(const OpenCrypto&) = delete;
  ~OpenCrypto() { latchkey_crypto_close(crypto_); }

  [[nodiscard]] bool IsOpen() const { return status_ == LATCHKEY_OK; }
  [[nodiscard]] latchkey_crypto* Get() const { return crypto_; }

 private:
  latchkey_crypto* crypto_ = nullptr;
  int status_;
};

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

// The digest of the password is what its keys are made from.
TEST_F(OtherSecretsTest, AfterEncryptionInCNeitherTextNorPasswordNorItsDigestIsLeft) {
  const Secret other = Secret::Random(16);
  const Secret digest = [&] {
    const OpenCrypto crypto;
    const WipedBytes secret = password.Bytes();
    WipedBytes result(16);
    std::size_t length = result.size();
    EXPECT_EQ(latchkey_hash(crypto.Get(), LATCHKEY_MD5, secret.data(), secret.size(), result.data(),
                            &length),
              LATCHKEY_OK);
    return Secret(result);
  }();
  search.Add(kResult, digest);
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

TEST_F(OtherSecretsTest, AfterDigestsAndDigitsInCNothingOfTheTextIsLeft) {
  const Secret other = Secret::Random(16);
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI&) { return SucceedsInMemory([&] { return IsConverted(plaintext); }); },
      kPasswordAlone);
}

}  // namespace
}  // namespace latchkey::test
