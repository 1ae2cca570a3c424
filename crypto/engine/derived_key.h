// A key for any number of messages and threads, derived once.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "crypto/algorithms.h"
#include "crypto/cipher_sites.h"
#include "crypto/password_cipher.h"
#include "provider/block_size.h"

namespace latchkey {

// Any is the enhanced provider for ciphers that the base provider lacks, for effective bits of RC2
// and for more than 56 key bits; otherwise the base provider.
enum class ProviderChoice { Any, Base, Enhanced };

// What a key is derived from, besides the password.
struct KeySettings {
  std::int32_t hash = 1;    // as the component numbers it
  std::int32_t cipher = 1;  // as the component numbers it
  ProviderChoice provider = ProviderChoice::Any;
  std::uint32_t keyBits = 0;           // as in KeyRequest
  std::uint32_t rc2EffectiveBits = 0;  // as in KeyRequest

  [[nodiscard]] bool UsesEnhancedProvider() const noexcept;
  [[nodiscard]] bool HasBlockCipher() const noexcept { return cipher != kCipherRc4; }

  // BytesToWholeBlocks for a ciphertext of that length; 0 for a stream cipher. Clients that drop
  // trailing spaces remove bytes of value 20 (hexadecimal) from the end of a ciphertext.
  [[nodiscard]] std::size_t MissingBytes(std::uint64_t length) const noexcept;

  friend bool operator==(const KeySettings&, const KeySettings&) = default;
};

// The number of bytes that a message of that length lacks to be whole blocks.
[[nodiscard]] std::size_t BytesToWholeBlocks(std::uint64_t length) noexcept;

// After Derive the key never changes: any number of threads may use it at once.
class DerivedKey {
 public:
  // Open opens the provider; Derive then derives the key. Call each once, and no other member
  // before both succeeded. They return the check of `sites` that failed, or null. Derive raises
  // Overflow for a password of 4 GiB or more.
  [[nodiscard]] const CheckSite* Open(const KeySettings& settings,
                                      const CipherSites& sites = kEncryptionSites);
  [[nodiscard]] const CheckSite* Derive(std::span<const std::uint8_t> password);

  // Open and Derive in one call.
  [[nodiscard]] const CheckSite* Derive(const KeySettings& settings,
                                        std::span<const std::uint8_t> password,
                                        const CipherSites& sites = kEncryptionSites);

  [[nodiscard]] const KeySettings& Settings() const noexcept { return settings_; }

  // Encrypts or decrypts a whole message in place: the first `length` bytes of `buffer`, which has
  // at least RoomFor bytes. Sets `length` to that of the result. False if the provider refuses.
  [[nodiscard]] bool Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                               std::uint32_t& length) const;

  // Transforms each message of a batch, as EncryptEach and DecryptEach of provider::MessageKey do.
  // Requires room for the sum of the messages' RoomFor, each of which must fit 32 bits.
  void TransformEach(CipherDirection direction, const provider::MessageBatch& batch) const;

  // The room that Transform requires for a message of that length. For encryption it is the
  // ciphertext's length. If it does not fit 32 bits, the message is too long.
  // Inline, since batches call it for each record.
  [[nodiscard]] std::uint64_t RoomFor(CipherDirection direction,
                                      std::size_t length) const noexcept {
    const bool pads = direction == CipherDirection::Encrypt && settings_.HasBlockCipher();
    return pads ? provider::PaddedLength(length) : length;
  }

  // The most bytes that encryption adds to a message.
  [[nodiscard]] std::size_t MostAdded() const noexcept;

  // A copy of the key for messages in pieces, on one thread. Empty if the provider refuses.
  [[nodiscard]] PasswordKey NewSession() const;

 private:
  KeySettings settings_;
  const CipherSites* sites_ = nullptr;
  KeyRequest request_;  // without the password
  UniqueContext context_;
  PasswordKey key_;  // never used for data, so it stays in its first state
  std::unique_ptr<const provider::MessageKey> messages_;
};

}  // namespace latchkey
