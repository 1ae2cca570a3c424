// Which kernels this process uses: chosen once, from what the machine has and what the variable
// LATCHKEY_CPU asks for.
#pragma once

#include <string_view>

namespace latchkey {

// In rising order; each has all that the ones before it have.
enum class CpuLevel {
  Portable,  // standard C++ for any CPU
  Avx2,      // 256-bit vectors
  Avx512     // 512-bit vectors with byte and word operations (AVX-512F, AVX-512BW)
};

// As LATCHKEY_CPU and reports have it: portable, avx2 or avx512.
[[nodiscard]] const char* NameOf(CpuLevel level) noexcept;

// The highest level that this build has kernels for and this machine can run.
[[nodiscard]] CpuLevel HighestCpuLevel() noexcept;

// The level of that name, but at most `highest`, which any other name gives too: a wish that cannot
// be granted costs speed at most, never the result.
[[nodiscard]] CpuLevel CpuLevelNamed(std::string_view name, CpuLevel highest) noexcept;

// The level of this process: the highest, or the one that LATCHKEY_CPU named at the first call.
[[nodiscard]] CpuLevel ChosenCpuLevel() noexcept;

// Whether SHA-1's own instructions may be used: the machine has them, and LATCHKEY_CPU does not ask
// for the portable kernels.
[[nodiscard]] bool HasShaInstructions() noexcept;

}  // namespace latchkey
