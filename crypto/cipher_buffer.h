// The buffer that Encrypt and Decrypt work in.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/checked_arithmetic.h"
#include "provider/block_size.h"

namespace latchkey {

// The most bytes that a cipher adds.
inline constexpr std::size_t kLargestPadding = provider::kBlockSize;

// Its length in bytes for that much input: twice as much, which leaves room for the padding. Raises
// Overflow where that is no signed 32-bit number.
[[nodiscard]] inline std::size_t CipherBufferLength(std::size_t inputLength) {
  return static_cast<std::size_t>(CheckedMultiply(2, NarrowTo<std::int32_t>(inputLength)));
}

}  // namespace latchkey
