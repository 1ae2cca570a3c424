// A session key as CryptEncrypt and CryptDecrypt use it: a cipher, its state between calls, and the
// padding of the final block.
#pragma once

#include <cstdint>
#include <memory>

#include "provider/crypto_provider.h"
#include "provider/portable/cipher.h"

namespace latchkey::provider {

// Used by one thread at a time. Both operations return 0 or the error code of the failure. After a
// final call that did its work, padding good or bad, the state is that of a fresh key.
class SessionKey {
 public:
  SessionKey(HCRYPTPROV provider, std::unique_ptr<Cipher> cipher) noexcept;

  [[nodiscard]] HCRYPTPROV Provider() const noexcept { return provider_; }

  [[nodiscard]] bool HasEffectiveBits() const noexcept { return cipher_->HasEffectiveBits(); }

  // Sets RC2's effective key length, 1 to 1024 bits; the state is then that of a fresh key.
  void SetEffectiveBits(unsigned bits) noexcept { cipher_->SetEffectiveBits(bits); }

  // Encrypts `length` bytes at `data`, in a buffer of `room` bytes. `length` becomes that of the
  // ciphertext, also when it is too long for the buffer (kErrorMoreData). Without `final` a block
  // cipher takes whole blocks only (else kErrorBadData).
  [[nodiscard]] std::uint32_t Encrypt(bool final, std::uint8_t* data, std::uint32_t& length,
                                      std::uint32_t room) noexcept;

  // Decrypts in place; `length` becomes that of the plaintext. kErrorBadData, with the length as it
  // was: no whole number of blocks, no block at all to take the padding from, or bad padding.
  [[nodiscard]] std::uint32_t Decrypt(bool final, std::uint8_t* data,
                                      std::uint32_t& length) noexcept;

 private:
  HCRYPTPROV provider_;
  std::unique_ptr<Cipher> cipher_;
};

}  // namespace latchkey::provider
