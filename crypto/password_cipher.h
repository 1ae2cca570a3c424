// Encryption and decryption of exact bytes under a key derived from a password.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "base/secure_memory.h"
#include "crypto/provider_handles.h"

namespace latchkey {

enum class CipherDirection { Encrypt, Decrypt };

// The step of a password cipher that failed; Done when all succeeded.
enum class CipherStep { Done, CreateHash, HashData, DeriveKey, Cipher };

// What a key is derived from. The password must live until Derive returns; nothing changes it.
struct KeyRequest {
  provider::AlgorithmId hash = provider::kAlgorithmNone;
  provider::AlgorithmId cipher = provider::kAlgorithmNone;
  std::span<const std::uint8_t> password;
  // 1 to 1024, for RC2 with the enhanced provider; 0 leaves the number to the provider. Data of
  // Windows 2000 and before has keys of 16 bytes with 40 effective bits.
  std::uint32_t rc2EffectiveBits = 0;
  // The length of an RC4 or RC2 key: 40 to 56, with the enhanced provider to 128, in steps of 8.
  // 0 leaves it to the provider. Effective bits of 0 follow it.
  std::uint32_t keyBits = 0;
};

// A key derived from a password. It is what CryptDeriveKey makes from the hash of the password,
// without a random salt or initialization vector: the same request always gives the same key.
//
// The key serves any number of messages, one after another, in either direction: the final call of
// a message sets it back to its first state. After a call that failed, or a message that was
// abandoned, derive a new key.
//
// Used by one thread at a time. The provider's context must outlive the object, which owns the
// handles: on destruction the key is destroyed first, then the hash of a derivation that failed.
class PasswordKey {
 public:
  // Hashes the password, derives the key and destroys the hash. Call it once. Key bits and
  // effective bits that the provider refuses fail as DeriveKey.
  [[nodiscard]] CipherStep Derive(const UniqueContext& context, const KeyRequest& request);

  // Encrypts or decrypts the first `length` bytes of `buffer` in place, after Derive; no byte is
  // lost. `length` becomes the number of bytes of the result. A message may come in pieces, the
  // last one with `final`: together they give what one call for the whole gives. Pieces before the
  // last are multiples of the block size, 8 bytes. With `final`, encryption under a block cipher
  // pads to the next multiple of it above `length`, and fails when `buffer` has no room for that.
  [[nodiscard]] CipherStep Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                                     std::uint32_t& length, bool final = true);

  // A key with the state of this one; without a key if the provider refuses.
  [[nodiscard]] PasswordKey Duplicate() const;
  [[nodiscard]] bool HasKey() const noexcept { return static_cast<bool>(key_); }

  // A key for whole messages, for any number of threads, from a key that nothing was encrypted or
  // decrypted with. This one must outlive it.
  [[nodiscard]] std::unique_ptr<const provider::MessageKey> MakeMessageKey() const {
    return key_.Get().provider->MakeMessageKey(key_.Get().value);
  }

 private:
  UniqueHash hash_;
  UniqueKey key_;
};

}  // namespace latchkey
