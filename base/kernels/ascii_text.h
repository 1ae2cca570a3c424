// The kernels for ASCII characters, one for each kind of CPU.
#pragma once

#include "base/ascii_text.h"
#include "base/kernels/cpu_level.h"

namespace latchkey {

[[nodiscard]] const AsciiText& AsciiTextAt(CpuLevel level) noexcept;

// Defined in builds that have kernels for the level.
extern const AsciiText kAsciiTextAvx2;
extern const AsciiText kAsciiTextNeon;

}  // namespace latchkey
