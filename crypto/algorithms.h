// Maps the algorithm numbers that callers pass to the provider's algorithms.
#pragma once

#include <cstdint>

#include "provider/crypto_provider.h"

namespace latchkey {

// The numbers below go from 1 to these counts.
inline constexpr std::int16_t kHashCount = 4;
inline constexpr std::int16_t kCipherCount = 5;

inline constexpr std::int16_t kCipherRc4 = 1;  // the only stream cipher
inline constexpr std::int16_t kCipherRc2 = 2;

struct HashAlgorithm {
  provider::AlgorithmId id = provider::kAlgorithmNone;
  std::int32_t length = 0;  // of the digest, in bytes
};

// 1 MD5, 2 MD4, 3 MD2, 4 SHA-1; any other number gives no algorithm and length 0.
[[nodiscard]] HashAlgorithm FindHashAlgorithm(std::int16_t number) noexcept;

// 1 RC4, 2 RC2, 3 DES and, with the enhanced set, 4 3DES and 5 two-key 3DES; any other number
// gives kAlgorithmNone.
[[nodiscard]] provider::AlgorithmId FindCipherAlgorithm(std::int16_t number,
                                                        bool enhanced) noexcept;

}  // namespace latchkey
