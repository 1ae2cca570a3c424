// Byte arrays as text.
#pragma once

#include <cstdint>
#include <span>

#include "crypto/byte_array.h"

namespace latchkey {

// The text that a byte array carries, as its code-page bytes: all elements but the last, without
// trailing spaces. A view of the array's elements. Raises SubscriptOutOfRange for an array without
// an element 0 or of several dimensions, Overflow as CheckTextCapacity does.
[[nodiscard]] std::span<const std::uint8_t> TextBytesOf(const ByteArray& array);

}  // namespace latchkey
