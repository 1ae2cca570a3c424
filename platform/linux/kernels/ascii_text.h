// ASCII characters: the kernels of each kind of CPU.
#pragma once

#include "platform/ascii_text.h"
#include "platform/linux/kernels/cpu_level.h"

namespace latchkey::platform {

[[nodiscard]] const AsciiText& AsciiTextAt(CpuLevel level) noexcept;

// The bodies beside the portable one, one file each, where the build has kernels for the level.
extern const AsciiText kAsciiTextAvx2;
extern const AsciiText kAsciiTextAvx512;

}  // namespace latchkey::platform
