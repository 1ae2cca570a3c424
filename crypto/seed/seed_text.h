// The text of digits that seeds random data: a mixture of clock, volume, disk space and windows.
#pragma once

#include <cstdint>

#include "latchkey/types.h"

namespace latchkey {

// A text of decimal digits, another one at nearly every call. It is auxiliary: what it seeds also
// draws on a real random source. Which readings it mixes is chosen by GetTickDigit. Raises the
// faults of that arithmetic: Overflow, DivisionByZero, InvalidProcedureCall, TypeMismatch.
[[nodiscard]] Text BuildSeedText();

// The digits of the last five characters of the tick count's signed decimal text, summed until one
// digit is left: 0 to 9, or a negative number for ticks from -9999 to -1.
[[nodiscard]] std::int32_t GetTickDigit();

// `value` shifted left within 32 bits: bits pushed out are lost, bit 31 is the sign. A count of 0
// gives the value, one outside 0 to 31 gives 0.
[[nodiscard]] std::int32_t ShiftLeft(std::int32_t value, std::int32_t bitCount) noexcept;

}  // namespace latchkey
