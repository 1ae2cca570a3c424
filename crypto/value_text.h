// The text form of any value.
#pragma once

#include "latchkey/types.h"
#include "platform/variant_text.h"

namespace latchkey {

// The text of a value that is not text itself. Raises InvalidUseOfNull for Null and TypeMismatch
// for a value that has no text, such as a date outside the years 100 to 9999.
[[nodiscard]] Text TextOfValue(const Variant& value);

// The number that a whole text reads as. Raises TypeMismatch for text that is no number, Overflow
// for one that a Double cannot hold.
[[nodiscard]] double NumberIn(TextView text);

}  // namespace latchkey
