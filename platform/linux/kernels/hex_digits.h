// Hexadecimal digits: the kernels of each kind of CPU.
#pragma once

#include "platform/hex_digits.h"
#include "platform/linux/kernels/cpu_level.h"

namespace latchkey::platform {

[[nodiscard]] const HexDigits& HexDigitsAt(CpuLevel level) noexcept;

// The bodies beside the portable one, one file each, where the build has kernels for the level.
extern const HexDigits kHexDigitsAvx2;
extern const HexDigits kHexDigitsAvx512;
extern const HexDigits kHexDigitsAvx512Vbmi;

}  // namespace latchkey::platform
