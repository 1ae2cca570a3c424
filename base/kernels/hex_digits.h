// The kernels for hexadecimal digits, one for each kind of CPU.
#pragma once

#include "base/hex_digits.h"
#include "base/kernels/cpu_level.h"

namespace latchkey {

[[nodiscard]] const HexDigits& HexDigitsAt(CpuLevel level) noexcept;

// Defined in builds that have kernels for the level.
extern const HexDigits kHexDigitsAvx2;
extern const HexDigits kHexDigitsNeon;

}  // namespace latchkey
