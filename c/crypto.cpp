// The C interface: encryption, decryption and digests of exact bytes.
#include <algorithm>
#include <limits>

#include "base/checked_arithmetic.h"
#include "c/objects.h"
#include "crypto/algorithms.h"
#include "crypto/cipher_buffer.h"
#include "crypto/cipher_sites.h"
#include "crypto/default_password.h"
#include "crypto/message_digest.h"
#include "crypto/open_provider.h"
#include "crypto/password_cipher.h"

namespace latchkey {
namespace {

constexpr std::uint32_t kKeyFlags = LATCHKEY_ENHANCED | LATCHKEY_DEFAULT_PASSWORD;

// A hash or cipher number of the component; 0, which is none, for one that it cannot have.
std::int16_t ComponentNumber(std::int32_t number) noexcept {
  return std::in_range<std::int16_t>(number) ? static_cast<std::int16_t>(number) : std::int16_t{0};
}

CipherStep DeriveKey(PasswordKey& derived, const UniqueContext& provider,
                     provider::AlgorithmId hashAlgorithm, provider::AlgorithmId cipherAlgorithm,
                     const latchkey_key& key) {
  const auto derive = [&](InputBytes password) {
    return derived.Derive(provider,
                          {hashAlgorithm, cipherAlgorithm, password, key.rc2_effective_bits});
  };
  if ((key.flags & LATCHKEY_DEFAULT_PASSWORD) == 0) {
    return derive({key.password, key.password_length});
  }
  return derive(DefaultPassword().TextElements());
}

int Transform(CryptoObject& crypto, CipherDirection direction, const latchkey_key& key,
              InputBytes input, Output& output) {
  const CipherSites& sites = SitesOf(direction);
  const bool enhanced = (key.flags & LATCHKEY_ENHANCED) != 0;
  const HashAlgorithm hash = FindHashAlgorithm(ComponentNumber(key.hash));
  if (hash.id == provider::kAlgorithmNone) return Refuse(sites.hashType);
  const auto cipherAlgorithm = FindCipherAlgorithm(ComponentNumber(key.cipher), enhanced);
  if (cipherAlgorithm == provider::kAlgorithmNone) return Refuse(sites.cipherType);
  const UniqueContext& provider = crypto.Provider(enhanced);
  if (!provider) return Refuse(sites.provider);

  auto length = NarrowTo<std::uint32_t>(input.size());
  PasswordKey passwordKey;
  const CipherStep derived = DeriveKey(passwordKey, provider, hash.id, cipherAlgorithm, key);
  if (derived != CipherStep::Done) return Refuse(sites.SiteOf(derived));
  WipedBytes buffer(input.size() + kLargestPadding);
  std::copy(input.begin(), input.end(), buffer.begin());
  const CipherStep applied = passwordKey.Transform(direction, buffer, length);
  if (applied != CipherStep::Done) return Refuse(sites.SiteOf(applied));
  return output.Deliver(std::span(buffer).first(length));
}

int CheckKey(const latchkey_key& key) noexcept {
  if ((key.flags & ~kKeyFlags) != 0) return LATCHKEY_BAD_FLAGS;
  const bool twoPasswords =
      (key.flags & LATCHKEY_DEFAULT_PASSWORD) != 0 && key.password_length != 0;
  return twoPasswords ? LATCHKEY_BAD_ARGUMENT : LATCHKEY_OK;
}

int Run(latchkey_crypto* handle, CipherDirection direction, const latchkey_key* key, Input input,
        Output output) {
  constexpr latchkey_key kNoKey{};
  const latchkey_key& given = key == nullptr ? kNoKey : *key;
  const Input password(given.password, given.password_length);
  return WithOutput(output, {input, password}, [&]() -> int {
    if (key == nullptr) return LATCHKEY_BAD_ARGUMENT;
    const int checked = CheckKey(*key);
    if (checked != LATCHKEY_OK) return checked;
    return WithObject<CryptoTable>(handle, [&](CryptoObject& crypto) {
      return Operation(SitesOf(direction).trap,
                       [&] { return Transform(crypto, direction, *key, input.Bytes(), output); });
    });
  });
}

int Digest(CryptoObject& crypto, std::int32_t number, InputBytes input, Output& output) {
  const UniqueContext& provider = crypto.Provider(false);
  if (!provider) {
    RecordApplicationFailure(check::kHashProvider);
    return LATCHKEY_NO_PROVIDER;
  }
  const HashAlgorithm algorithm = FindHashAlgorithm(ComponentNumber(number));
  if (algorithm.id == provider::kAlgorithmNone) return LATCHKEY_BAD_HASH;
  MessageDigest message;
  WipedBytes digest(static_cast<std::size_t>(algorithm.length));
  const bool done =
      message.Begin(provider, algorithm.id) && message.Add(input) && message.Read(digest);
  return done ? output.Deliver(digest) : LATCHKEY_PROVIDER_REFUSED;
}

}  // namespace

const UniqueContext& CryptoObject::Provider(bool enhanced) {
  UniqueContext& provider = providers[enhanced ? 1 : 0];
  if (!provider) provider = OpenProvider(enhanced);
  return provider;
}

}  // namespace latchkey

using namespace latchkey;  // NOLINT(google-build-using-namespace): all of it is the component's

int latchkey_crypto_open(latchkey_crypto** crypto) { return OpenObject<CryptoTable>(crypto); }

int latchkey_crypto_close(latchkey_crypto* crypto) { return CloseObject<CryptoTable>(crypto); }

int latchkey_encrypt(latchkey_crypto* crypto, const latchkey_key* key, const uint8_t* input,
                     size_t inputLength, uint8_t* output, size_t* outputLength) {
  return Run(crypto, CipherDirection::Encrypt, key, {input, inputLength}, {output, outputLength});
}

int latchkey_decrypt(latchkey_crypto* crypto, const latchkey_key* key, const uint8_t* input,
                     size_t inputLength, uint8_t* output, size_t* outputLength) {
  return Run(crypto, CipherDirection::Decrypt, key, {input, inputLength}, {output, outputLength});
}

int latchkey_hash(latchkey_crypto* crypto, int32_t hash, const uint8_t* input, size_t inputLength,
                  uint8_t* digest, size_t* digestLength) {
  const Input message(input, inputLength);
  Output output(digest, digestLength);
  return WithOutput(output, {message}, [&] {
    return WithObject<CryptoTable>(crypto, [&](CryptoObject& object) {
      return Operation(trap::kCreateHash,
                       [&] { return Digest(object, hash, message.Bytes(), output); });
    });
  });
}
