// Encryption and decryption of exact bytes under a key derived from a password.
#pragma once

#include <cstdint>
#include <span>

#include "base/secure_memory.h"
#include "crypto/provider_handles.h"

namespace latchkey {

// The step of a password cipher that failed; Done when none did.
enum class CipherStep { Done, CreateHash, HashData, DeriveKey, Cipher };

// One key and what made it, for one message. The key is what CryptDeriveKey makes, with flags 0,
// from the hash of the password: no salt and no initialisation vector are involved, so the same
// password and algorithms always give the same key. No member changes a byte of the password or
// loses one of the data, and no handle outlives the object: the key goes first, then the hash.
// Used by one thread. The context must outlive the object.
class PasswordCipher {
 public:
  explicit PasswordCipher(const UniqueContext& context) noexcept : context_(context) {}

  // Hashes the password and derives the key; the hash is destroyed at once. Call it once.
  // `rc2EffectiveBits` (1 to 1024; 0 leaves it to the provider) is for RC2 with the enhanced
  // provider: data of Windows 2000 and before has keys of 16 bytes with 40 effective bits. A
  // number that the provider refuses fails as DeriveKey.
  [[nodiscard]] CipherStep DeriveKey(provider::AlgorithmId hashAlgorithm,
                                     provider::AlgorithmId cipherAlgorithm,
                                     std::span<const std::uint8_t> password,
                                     std::uint32_t rc2EffectiveBits = 0);

  // Process the first `length` bytes of `buffer` in place, after DeriveKey. `length` becomes the
  // number of bytes of the result. A message may come in pieces, the last one with `final`: they
  // give what the whole gives in one call. Pieces before the last are multiples of 8 bytes.
  // With `final` a block cipher pads to the next multiple of 8 above `length`; when `buffer` has
  // no room for that, Encrypt fails.
  [[nodiscard]] CipherStep Encrypt(std::span<std::uint8_t> buffer, std::uint32_t& length,
                                   bool final = true);
  [[nodiscard]] CipherStep Decrypt(std::span<std::uint8_t> buffer, std::uint32_t& length,
                                   bool final = true);

 private:
  const UniqueContext& context_;
  UniqueHash hash_;
  UniqueKey key_;
};

}  // namespace latchkey
