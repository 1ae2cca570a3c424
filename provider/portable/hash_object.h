// A CryptoAPI hash object: it accepts data until its value is read.
#pragma once

#include <nettle/nettle-meta.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/secure_memory.h"
#include "provider/crypto_provider.h"

namespace latchkey::provider {

// The description of a hash algorithm in Nettle's form, or null for an unknown identifier.
[[nodiscard]] const nettle_hash* HashAlgorithm(AlgorithmId id) noexcept;

// Used by one thread at a time. State and value are wiped on destruction.
class HashObject {
 public:
  HashObject(HCRYPTPROV provider, const nettle_hash& algorithm);

  [[nodiscard]] HCRYPTPROV Provider() const noexcept { return provider_; }
  [[nodiscard]] const nettle_hash& Algorithm() const noexcept { return algorithm_; }

  // Adds data. Returns false if the hash is complete.
  [[nodiscard]] bool Add(std::span<const std::uint8_t> data) noexcept;

  // Completes the hash on the first call; later calls return the same bytes.
  [[nodiscard]] const WipedBytes& Value();

 private:
  HCRYPTPROV provider_;
  const nettle_hash& algorithm_;
  WipedBytes context_;
  WipedBytes value_;  // empty until complete
};

// The hash of `data` in one step.
[[nodiscard]] WipedBytes HashOf(const nettle_hash& algorithm, std::span<const std::uint8_t> data);

}  // namespace latchkey::provider
