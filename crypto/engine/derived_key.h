// A key for any number of messages and threads, derived once.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "crypto/cipher_sites.h"
#include "crypto/password_cipher.h"

namespace latchkey {

// Any is the base provider, or the enhanced one if the base provider lacks the cipher or cannot
// have the bits.
enum class ProviderChoice { Any, Base, Enhanced };

// What a key is derived from, besides the password.
struct KeySettings {
  std::int32_t hash = 1;    // number of the component
  std::int32_t cipher = 1;  // number of the component
  ProviderChoice provider = ProviderChoice::Any;
  std::uint32_t keyBits = 0;           // as in KeyRequest
  std::uint32_t rc2EffectiveBits = 0;  // as in KeyRequest

  [[nodiscard]] bool UsesEnhancedProvider() const noexcept;
  [[nodiscard]] bool HasBlockCipher() const noexcept;
  // Whether the hash and the cipher exist and the provider has the cipher.
  [[nodiscard]] bool IsAllowed() const noexcept;

  friend bool operator==(const KeySettings&, const KeySettings&) = default;
};

// After Derive it never changes: any number of threads may use it at once.
class DerivedKey {
 public:
  // Call it once; nothing else before it succeeded. Returns the check of `sites` that failed, or
  // null. Raises Overflow for a password of 4 GiB or more.
  [[nodiscard]] const CheckSite* Derive(const KeySettings& settings,
                                        std::span<const std::uint8_t> password,
                                        const CipherSites& sites = kEncryptionSites);

  [[nodiscard]] const KeySettings& Settings() const noexcept { return settings_; }

  // Encrypts or decrypts a whole message in place: the first `length` bytes of `buffer`. `length`
  // becomes that of the result. Encryption requires room for EncryptedLength.
  [[nodiscard]] bool Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                               std::uint32_t& length) const;

  // The length of the ciphertext of a message, and the most bytes that it is longer.
  [[nodiscard]] std::size_t EncryptedLength(std::size_t length) const noexcept;
  [[nodiscard]] std::size_t MostAdded() const noexcept;

  // A key for messages in pieces, for one thread; without a key if the provider refuses.
  [[nodiscard]] PasswordKey NewSession() const;

 private:
  KeySettings settings_;
  UniqueContext context_;
  PasswordKey key_;  // stays in its first state
  std::unique_ptr<const provider::MessageKey> messages_;
};

}  // namespace latchkey
