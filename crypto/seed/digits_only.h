// Converts any value to decimal digits.
#pragma once

#include "latchkey/types.h"
#include "platform/variant_text.h"

namespace latchkey {

// The text of the value. If it reads as a number, the characters . , E - and + are removed;
// otherwise each character that is not a digit is replaced by its code-page code in decimal. Empty
// on failure. Raises nothing.
[[nodiscard]] Text DigitsOnly(const Variant& value) noexcept;

}  // namespace latchkey
