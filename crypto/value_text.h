// Conversion of values to text, and of text to numbers.
#pragma once

#include "latchkey/types.h"
#include "platform/variant_text.h"

namespace latchkey {

// The text of a value that is not text itself. Raises InvalidUseOfNull for Null and TypeMismatch
// for a value without a text form, such as a date outside the years 100 to 9999.
[[nodiscard]] Text TextOfValue(const Variant& value);

// The number that the whole text denotes. Raises TypeMismatch for text that is not a number, and
// Overflow for a number that a Double cannot hold.
[[nodiscard]] double NumberIn(TextView text);

}  // namespace latchkey
