// Any value as decimal digits.
#pragma once

#include "latchkey/types.h"
#include "platform/variant_text.h"

namespace latchkey {

// The text of the value without the characters . , E - and +, when that reads as a number;
// otherwise with each character that is no digit replaced by its code-page code in decimal. Empty
// when it fails. Raises nothing.
[[nodiscard]] Text DigitsOnly(const Variant& value) noexcept;

}  // namespace latchkey
