// Byte arrays as text.
#pragma once

#include <cstdint>
#include <span>

#include "base/secure_memory.h"
#include "crypto/shaped_bytes.h"
#include "crypto/working_text.h"
#include "latchkey/types.h"

namespace latchkey {

// The text that an array with these TextElements carries, as its code-page bytes; the text ends
// before the trailing spaces. Raises Overflow for more text than a working text can hold.
[[nodiscard]] WorkingText WorkingTextOf(std::span<const std::uint8_t> textElements);

// The same without the trailing spaces, to be kept.
[[nodiscard]] WipedBytes TextBytesOf(std::span<const std::uint8_t> textElements);

// The codes of a text and one zero element. Raises Overflow for a text too long for an array and
// for a character that the code page writes in several bytes.
[[nodiscard]] ShapedBytes ArrayOfText(TextView text);

}  // namespace latchkey
