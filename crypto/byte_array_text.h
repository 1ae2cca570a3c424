// Byte arrays as text.
#pragma once

#include "base/secure_memory.h"
#include "crypto/byte_array.h"
#include "crypto/working_text.h"

namespace latchkey {

// The text that a byte array carries, as its code-page bytes: all elements but the last; the text
// ends before the trailing spaces. Raises SubscriptOutOfRange for an array without an element 0 or
// of several dimensions, Overflow for more text than a working text can hold.
[[nodiscard]] WorkingText WorkingTextOf(const ByteArray& array);

// The same without the trailing spaces, to be kept.
[[nodiscard]] WipedBytes TextBytesOf(const ByteArray& array);

}  // namespace latchkey
