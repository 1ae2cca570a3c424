// A session key for CryptEncrypt and CryptDecrypt: a cipher, its state between calls, and the
// padding of the final block.
#pragma once

#include <cstdint>
#include <memory>

#include "provider/crypto_provider.h"
#include "provider/portable/cipher.h"

namespace latchkey::provider {

// Used by one thread at a time. Both operations return 0 or the error code of the failure. A final
// call that processed its data resets the key, also after bad padding.
class SessionKey {
 public:
  SessionKey(HCRYPTPROV provider, std::shared_ptr<const Cipher> cipher);

  // For one message of that length, of no provider. Without memory for a batch it takes longer.
  SessionKey(std::shared_ptr<const Cipher> cipher, std::size_t length) noexcept;

  // A key in the same state as the other one, for messages of any length.
  SessionKey(const SessionKey& other);
  SessionKey& operator=(const SessionKey&) = delete;
  ~SessionKey() = default;

  [[nodiscard]] HCRYPTPROV Provider() const noexcept { return provider_; }

  [[nodiscard]] const std::shared_ptr<const Cipher>& SharedCipher() const noexcept {
    return cipher_;
  }

  // Replaces the cipher by the same one with other effective bits, and resets the key.
  void Replace(std::shared_ptr<const Cipher> cipher) noexcept;

  // Encrypts `length` bytes at `data`, in a buffer of `room` bytes. `length` becomes that of the
  // ciphertext, also if it is too long for the buffer (kErrorMoreData). Without `final` a block
  // cipher requires whole blocks (else kErrorBadData).
  [[nodiscard]] std::uint32_t Encrypt(bool final, std::uint8_t* data, std::uint32_t& length,
                                      std::uint32_t room) noexcept;

  // Decrypts in place; `length` becomes that of the plaintext. Returns kErrorBadData and leaves the
  // length unchanged for an incomplete block, for a final call without any block, or for bad
  // padding.
  [[nodiscard]] std::uint32_t Decrypt(bool final, std::uint8_t* data,
                                      std::uint32_t& length) noexcept;

 private:
  HCRYPTPROV provider_;
  std::shared_ptr<const Cipher> cipher_;
  CipherState state_;
};

}  // namespace latchkey::provider
