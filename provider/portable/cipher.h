// The ciphers, on the kernels for this CPU and GNU Nettle: RC4 as a stream, the others in CBC mode
// from a zero initialization vector. Whole blocks only; the session key does the padding.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "base/secure_memory.h"
#include "provider/block_size.h"
#include "provider/crypto_provider.h"

namespace latchkey::provider {

// Used by one thread at a time. Key material and state are wiped on destruction.
class Cipher {
 public:
  Cipher() = default;
  Cipher(const Cipher&) = delete;
  Cipher& operator=(const Cipher&) = delete;
  virtual ~Cipher() = default;

  [[nodiscard]] virtual bool IsBlockCipher() const noexcept = 0;

  // Whether the cipher can use only a part of its key's bits: RC2.
  [[nodiscard]] virtual bool HasEffectiveBits() const noexcept { return false; }

  // Sets that number, 1 to 1024, and restarts. Does nothing if HasEffectiveBits is false.
  virtual void SetEffectiveBits(unsigned /*bits*/) noexcept {}

  // Work in place and continue from the call before, which may be either: both share one key stream
  // or one feedback block. A block cipher requires multiples of kBlockSize.
  virtual void Encrypt(std::span<std::uint8_t> data) noexcept = 0;
  virtual void Decrypt(std::span<std::uint8_t> data) noexcept = 0;

  // Resets to the state after construction.
  virtual void Restart() noexcept = 0;
};

// `key` has the length that KeyFormOf gives; `effectiveBits` is read for RC2 only.
[[nodiscard]] std::unique_ptr<Cipher> MakeCipher(AlgorithmId id, const WipedBytes& key,
                                                 unsigned effectiveBits);

}  // namespace latchkey::provider
