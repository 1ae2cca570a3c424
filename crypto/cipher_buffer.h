// The buffer that Encrypt and Decrypt work in.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/checked_arithmetic.h"
#include "provider/block_size.h"

namespace latchkey {

// The length of the buffer for an input, both in bytes: twice the input, which leaves room for the
// padding. Raises Overflow if that does not fit a signed 32-bit number.
[[nodiscard]] inline std::size_t CipherBufferLength(std::size_t inputLength) {
  return static_cast<std::size_t>(CheckedMultiply(2, NarrowTo<std::int32_t>(inputLength)));
}

}  // namespace latchkey
