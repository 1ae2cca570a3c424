// A key for any number of messages and threads, derived once.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "crypto/cipher_sites.h"
#include "crypto/password_cipher.h"

namespace latchkey {

// Any is the base provider, or the enhanced one if the base provider lacks the cipher, for
// effective bits of RC2 and for more than 56 key bits.
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

  // What a ciphertext of that length lacks to whole blocks; 0 for a stream cipher. A client that
  // drops trailing spaces cuts bytes of value 20 (hexadecimal) from a ciphertext's end.
  [[nodiscard]] std::size_t MissingBytes(std::uint64_t length) const noexcept;

  friend bool operator==(const KeySettings&, const KeySettings&) = default;
};

// After Derive it never changes: any number of threads may use it at once.
class DerivedKey {
 public:
  // Opens the provider, and then derives the key. Call each once, and nothing else before both
  // succeeded. They return the check of `sites` that failed, or null. Derive raises Overflow for a
  // password of 4 GiB or more.
  [[nodiscard]] const CheckSite* Open(const KeySettings& settings,
                                      const CipherSites& sites = kEncryptionSites);
  [[nodiscard]] const CheckSite* Derive(std::span<const std::uint8_t> password);

  // Both.
  [[nodiscard]] const CheckSite* Derive(const KeySettings& settings,
                                        std::span<const std::uint8_t> password,
                                        const CipherSites& sites = kEncryptionSites);

  [[nodiscard]] const KeySettings& Settings() const noexcept { return settings_; }

  // Encrypts or decrypts a whole message in place: the first `length` bytes of `buffer`. `length`
  // becomes that of the result. Requires the room that RoomFor returns.
  [[nodiscard]] bool Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                               std::uint32_t& length) const;

  // The room for a message of that length; for encryption it is the ciphertext's length. If it does
  // not fit into 32 bits, the message is too long.
  [[nodiscard]] std::uint64_t RoomFor(CipherDirection direction, std::size_t length) const noexcept;

  // The most bytes that encryption adds to a message.
  [[nodiscard]] std::size_t MostAdded() const noexcept;

  // A key for messages in pieces, for one thread; without a key if the provider refuses.
  [[nodiscard]] PasswordKey NewSession() const;

 private:
  KeySettings settings_;
  const CipherSites* sites_ = nullptr;
  KeyRequest request_;  // without the password
  UniqueContext context_;
  PasswordKey key_;  // stays in its first state
  std::unique_ptr<const provider::MessageKey> messages_;
};

}  // namespace latchkey
