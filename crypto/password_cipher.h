// Encryption and decryption of exact bytes under a key derived from a password.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "base/secure_memory.h"
#include "provider/provider_handles.h"

namespace latchkey {

enum class CipherDirection { Encrypt, Decrypt };

// The step of a password cipher that failed; Done if all succeeded.
enum class CipherStep { Done, CreateHash, HashData, DeriveKey, Cipher };

// What a key is derived from. The password must live until Derive returns, and is not changed.
struct KeyRequest {
  provider::AlgorithmId hash = provider::kAlgorithmNone;
  provider::AlgorithmId cipher = provider::kAlgorithmNone;
  std::span<const std::uint8_t> password;
  // 1 to 1024, for RC2 with the enhanced provider; 0 means the provider's default. Data of Windows
  // 2000 and before has keys of 16 bytes with 40 effective bits.
  std::uint32_t rc2EffectiveBits = 0;
  // The length of an RC4 or RC2 key: 40 to 56, with the enhanced provider to 128, in steps of 8.
  // 0 leaves it to the provider. Effective bits of 0 follow it.
  std::uint32_t keyBits = 0;
};

// A key derived from a password: CryptDeriveKey applied to the hash of the password. Without a
// random salt or an initialization vector, the same request always gives the same key.
//
// The key can process any number of messages, one after another, in either direction: the final
// call of a message resets it. After a failed call or an incomplete message, derive a new key.
//
// Used by one thread at a time. The provider's context must outlive the object, which owns the
// handles and destroys the key first, then the hash that a failed derivation left.
class PasswordKey {
 public:
  // Hashes the password, derives the key and destroys the hash. Call it once. Returns DeriveKey
  // also if the provider refuses the key bits or the effective bits.
  [[nodiscard]] CipherStep Derive(const UniqueContext& context, const KeyRequest& request);

  // Encrypts or decrypts the first `length` bytes of `buffer` in place, exactly as they are;
  // `length` becomes the length of the result. Call Derive first. A message may be passed in
  // pieces, the last one with `final`; the result is the same as for one call. Pieces before the
  // last must be multiples of the block size, 8 bytes. With `final`, a block cipher pads to the
  // next multiple of 8 above `length`, and encryption fails if `buffer` has no room for that.
  [[nodiscard]] CipherStep Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                                     std::uint32_t& length, bool final = true);

  [[nodiscard]] bool HasKey() const noexcept { return static_cast<bool>(key_); }

  // A key for whole messages, for any number of threads, from a key that nothing was encrypted or
  // decrypted with. This one must outlive it.
  [[nodiscard]] std::unique_ptr<const provider::MessageKey> MakeMessageKey() const {
    return key_.Get().provider->MakeMessageKey(key_.Get().value);
  }

  // A key for one thread, from what MakeMessageKey made of this one; without a key if the provider
  // refuses. Any number of threads may call it at once.
  [[nodiscard]] PasswordKey NewSession(const provider::MessageKey& messages) const;

 private:
  UniqueHash hash_;
  UniqueKey key_;
};

}  // namespace latchkey
