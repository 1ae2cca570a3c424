// Byte arrays as text.
#pragma once

#include <cstdint>
#include <span>

#include "crypto/shaped_bytes.h"
#include "latchkey/types.h"

namespace latchkey {

// The text of an array with these TextElements, as its code-page bytes without trailing spaces: a
// view of the elements. Raises Overflow as CheckTextCapacity does.
[[nodiscard]] std::span<const std::uint8_t> TextBytesOf(std::span<const std::uint8_t> textElements);

// The codes of a text, followed by one zero element. Raises Overflow for a text that is too long
// for an array and for a character that the code page writes in several bytes.
[[nodiscard]] ShapedBytes ArrayOfText(TextView text);

}  // namespace latchkey
