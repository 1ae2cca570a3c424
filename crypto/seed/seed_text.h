// The text of digits that seeds random data, made from clock, volume, disk space and windows.
#pragma once

#include <cstdint>

#include "latchkey/types.h"

namespace latchkey {

// A text of decimal digits, different on nearly every call. It is auxiliary: what it seeds also
// uses a real random source. GetTickDigit chooses which readings it combines. Raises the faults of
// that arithmetic: Overflow, DivisionByZero, InvalidProcedureCall, TypeMismatch.
[[nodiscard]] Text BuildSeedText();

// Sums the digits of the last five characters of the tick count's signed decimal text until one
// digit is left: 0 to 9, or a negative number for ticks from -9999 to -1.
[[nodiscard]] std::int32_t GetTickDigit();

// `value` shifted left within 32 bits: bits shifted out are lost, bit 31 is the sign. A count of 0
// gives the value, one outside 0 to 31 gives 0.
[[nodiscard]] std::int32_t ShiftLeft(std::int32_t value, std::int32_t bitCount) noexcept;

}  // namespace latchkey
