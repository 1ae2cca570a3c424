// The ciphers, on the kernels for this CPU and GNU Nettle: RC4 as a stream, the others in CBC mode
// from a zero initialization vector. Whole blocks only, without padding, except for batches.
#pragma once

#include <nettle/arcfour.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "base/secure_memory.h"
#include "provider/block_size.h"
#include "provider/crypto_provider.h"

namespace latchkey::provider {

// Where a message is in its cipher. Wiped on destruction.
struct CipherState {
  arcfour_ctx stream{};                             // RC4
  std::array<std::uint8_t, kBlockSize> feedback{};  // the others; ciphertext, not secret
  // kLargestBatch bytes for a partly filled batch of a kernel, or none: without them single blocks
  // give the same result more slowly. Not on the stack, which may be small.
  std::unique_ptr<std::uint8_t[]> batch;  // NOLINT(modernize-avoid-c-arrays): it has no size
  const WipeAtExit<arcfour_ctx> wipeStream{stream};
};

// A cipher with its key. It never changes, so any number of threads may use it at once, each with
// its own state. Key material is wiped on destruction.
class Cipher {
 public:
  Cipher() = default;
  Cipher(const Cipher&) = delete;
  Cipher& operator=(const Cipher&) = delete;
  virtual ~Cipher() = default;

  [[nodiscard]] virtual bool IsBlockCipher() const noexcept = 0;

  // Whether the cipher can use only a part of its key's bits: RC2.
  [[nodiscard]] virtual bool HasEffectiveBits() const noexcept { return false; }

  // The same cipher using that number of its key's bits, 1 to 1024. Null without HasEffectiveBits.
  [[nodiscard]] virtual std::shared_ptr<const Cipher> WithEffectiveBits(unsigned /*bits*/) const {
    return nullptr;
  }

  // Whether the state's batch makes a message of that length faster.
  [[nodiscard]] virtual bool UsesBatch(std::size_t /*length*/) const noexcept { return false; }

  // Sets the state to the beginning of a message. Required before the first one.
  virtual void Start(CipherState& state) const noexcept = 0;

  // Work in place and continue from the call before, which may be either: both share one key stream
  // or one feedback block. A block cipher requires multiples of kBlockSize.
  virtual void Encrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept = 0;
  virtual void Decrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept = 0;

  // As in MessageKey.
  virtual void EncryptEach(const MessageBatch& batch) const noexcept = 0;
  virtual void DecryptEach(const MessageBatch& batch) const noexcept = 0;
};

// `key` has the length that KeyFormOf gives; `effectiveBits` is read for RC2 only.
[[nodiscard]] std::shared_ptr<const Cipher> MakeCipher(AlgorithmId id, const WipedBytes& key,
                                                       unsigned effectiveBits);

}  // namespace latchkey::provider
