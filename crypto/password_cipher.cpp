#include "crypto/password_cipher.h"

#include "base/checked_arithmetic.h"

namespace latchkey {
namespace {

constexpr std::uint32_t kLongestKeyBits = 128;

// Providers differ in what they do with a length for another cipher.
bool MayHaveLength(provider::AlgorithmId cipher, std::uint32_t bits) noexcept {
  const bool hasLengths = cipher == provider::kAlgorithmRc4 || cipher == provider::kAlgorithmRc2;
  return bits == 0 || (hasLengths && bits <= kLongestKeyBits && bits % 8 == 0);
}

// Sets RC2's effective key length; 0 leaves it as the provider made it.
bool SetEffectiveBits(const KeyTrait::Type& key, std::uint32_t bits) {
  return bits == 0 ||
         key.provider->CryptSetKeyParam(key.value, provider::kEffectiveKeyLengthParameter,
                                        reinterpret_cast<const std::uint8_t*>(&bits), 0);
}

}  // namespace

CipherStep PasswordKey::Derive(const UniqueContext& context, const KeyRequest& request) {
  hash_ = MakeHash(context, request.hash);
  if (!hash_) return CipherStep::CreateHash;

  provider::CryptoProvider& provider = *context.Get().provider;
  const auto passwordLength = NarrowTo<std::uint32_t>(request.password.size());
  if (!provider.CryptHashData(hash_.Get().value, request.password.data(), passwordLength, 0)) {
    return CipherStep::HashData;
  }
  if (!MayHaveLength(request.cipher, request.keyBits)) return CipherStep::DeriveKey;
  key_ = Receive<KeyTrait>(provider, [&](provider::HCRYPTKEY* key) {
    return provider.CryptDeriveKey(context.Get().value, request.cipher, hash_.Get().value,
                                   request.keyBits << provider::kKeyLengthShift, key);
  });
  if (!key_) return CipherStep::DeriveKey;
  // Part of the operation rather than of the clean-up: a fault here is recorded.
  provider.CryptDestroyHash(hash_.Get().value);
  static_cast<void>(hash_.Release());
  return SetEffectiveBits(key_.Get(), request.rc2EffectiveBits) ? CipherStep::Done
                                                                : CipherStep::DeriveKey;
}

CipherStep PasswordKey::Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                                  std::uint32_t& length, bool final) {
  const auto& [provider, key] = key_.Get();
  const bool done = direction == CipherDirection::Encrypt
                        ? provider->CryptEncrypt(key, 0, final, 0, buffer.data(), &length,
                                                 NarrowTo<std::uint32_t>(buffer.size()))
                        : provider->CryptDecrypt(key, 0, final, 0, buffer.data(), &length);
  return done ? CipherStep::Done : CipherStep::Cipher;
}

PasswordKey PasswordKey::NewSession(const provider::MessageKey& messages) const {
  PasswordKey session;
  session.key_ = Receive<KeyTrait>(
      *key_.Get().provider, [&](provider::HCRYPTKEY* made) { return messages.Duplicate(made); });
  return session;
}

}  // namespace latchkey
