// Which kernels this process uses. Chosen once, by the machine's CPU and the environment variable
// LATCHKEY_CPU.
#pragma once

#include <string_view>

namespace latchkey {

// In ascending order for each kind of CPU. A level includes the lower levels of its kind, and
// Portable.
enum class CpuLevel {
  Portable,  // standard C++ for any CPU
  Avx2,      // 256-bit vectors
  Avx512,    // 512-bit vectors with byte and word operations (AVX-512F, AVX-512BW)
  Neon       // 128-bit vectors of ARM64
};

// The name in LATCHKEY_CPU and in reports: portable, avx2, avx512 or neon.
[[nodiscard]] const char* NameOf(CpuLevel level) noexcept;

// The highest level that this build has kernels for and this machine can run.
[[nodiscard]] CpuLevel HighestCpuLevel() noexcept;

// The level of that name, but at most `highest`; `highest` also for any other name and for a level
// of another kind of CPU. LATCHKEY_CPU is a hint: it can change the speed, never the result.
[[nodiscard]] CpuLevel CpuLevelNamed(std::string_view name, CpuLevel highest) noexcept;

// The level of this process: the highest, or the one that LATCHKEY_CPU names when this is first
// called.
[[nodiscard]] CpuLevel ChosenCpuLevel() noexcept;

// Whether the SHA-1 instructions may be used: the machine has them, and LATCHKEY_CPU is not
// "portable".
[[nodiscard]] bool HasShaInstructions() noexcept;

}  // namespace latchkey
