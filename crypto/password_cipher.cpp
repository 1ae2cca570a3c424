#include "crypto/password_cipher.h"

#include "base/checked_arithmetic.h"

namespace latchkey {
namespace {

// Sets RC2's effective key length; 0 leaves it as the provider made it.
bool SetEffectiveBits(const KeyTrait::Type& key, std::uint32_t bits) {
  return bits == 0 ||
         key.provider->CryptSetKeyParam(key.value, provider::kEffectiveKeyLengthParameter,
                                        reinterpret_cast<const std::uint8_t*>(&bits), 0);
}

}  // namespace

CipherStep PasswordCipher::DeriveKey(provider::AlgorithmId hashAlgorithm,
                                     provider::AlgorithmId cipherAlgorithm,
                                     std::span<const std::uint8_t> password,
                                     std::uint32_t rc2EffectiveBits) {
  hash_ = MakeHash(context_, hashAlgorithm);
  if (!hash_) return CipherStep::CreateHash;

  provider::CryptoProvider& provider = *context_.Get().provider;
  const auto passwordLength = NarrowTo<std::uint32_t>(password.size());
  if (!provider.CryptHashData(hash_.Get().value, password.data(), passwordLength, 0)) {
    return CipherStep::HashData;
  }
  KeyTrait::Type key{&provider};
  if (!provider.CryptDeriveKey(context_.Get().value, cipherAlgorithm, hash_.Get().value, 0,
                               &key.value)) {
    return CipherStep::DeriveKey;
  }
  key_.Reset(key);
  // Part of the work, not of the clean-up: a fault here is the operation's.
  hash_.Get().provider->CryptDestroyHash(hash_.Get().value);
  static_cast<void>(hash_.Release());
  return SetEffectiveBits(key, rc2EffectiveBits) ? CipherStep::Done : CipherStep::DeriveKey;
}

CipherStep PasswordCipher::Encrypt(std::span<std::uint8_t> buffer, std::uint32_t& length,
                                   bool final) {
  const bool encrypted =
      key_.Get().provider->CryptEncrypt(key_.Get().value, 0, final, 0, buffer.data(), &length,
                                        NarrowTo<std::uint32_t>(buffer.size()));
  return encrypted ? CipherStep::Done : CipherStep::Cipher;
}

CipherStep PasswordCipher::Decrypt(std::span<std::uint8_t> buffer, std::uint32_t& length,
                                   bool final) {
  const bool decrypted =
      key_.Get().provider->CryptDecrypt(key_.Get().value, 0, final, 0, buffer.data(), &length);
  return decrypted ? CipherStep::Done : CipherStep::Cipher;
}

}  // namespace latchkey
