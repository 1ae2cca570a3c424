#include "base/kernels/cpu_level.h"

#ifdef LATCHKEY_X86_KERNELS
#include <cpuid.h>
#endif

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

namespace latchkey {
namespace {

constexpr std::array kNames{"portable", "avx2", "avx512", "neon"};

// Queries the CPU itself (leaf 7, EBX bit 29), since __builtin_cpu_supports has no "sha" in clang
// 14.
bool MachineHasShaInstructions() noexcept {
#ifdef LATCHKEY_X86_KERNELS
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  __builtin_cpu_init();
  return static_cast<bool>(__builtin_cpu_supports("sse4.1")) &&
         __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & bit_SHA) != 0;
#else
  return false;
#endif
}

}  // namespace

CpuLevel HighestCpuLevel() noexcept {
#ifdef LATCHKEY_X86_KERNELS
  __builtin_cpu_init();
  // The compiler's run-time also checks that the operating system saves the wide registers.
  if (static_cast<bool>(__builtin_cpu_supports("avx512f")) &&
      static_cast<bool>(__builtin_cpu_supports("avx512bw"))) {
    return CpuLevel::Avx512;
  }
  if (static_cast<bool>(__builtin_cpu_supports("avx2"))) return CpuLevel::Avx2;
#elif defined(LATCHKEY_ARM_KERNELS)
  return CpuLevel::Neon;  // part of the architecture
#endif
  return CpuLevel::Portable;
}

const char* NameOf(CpuLevel level) noexcept { return kNames.at(static_cast<std::size_t>(level)); }

CpuLevel CpuLevelNamed(std::string_view name, CpuLevel highest) noexcept {
  const auto place = std::distance(kNames.begin(), std::find(kNames.begin(), kNames.end(), name));
  if (static_cast<std::size_t>(place) == kNames.size()) return highest;
  const auto level = static_cast<CpuLevel>(place);
  if (level == CpuLevel::Portable) return level;
  return level == CpuLevel::Neon || highest == CpuLevel::Neon ? highest : std::min(level, highest);
}

CpuLevel ChosenCpuLevel() noexcept {
  static const CpuLevel level = [] {
    const char* const name = std::getenv("LATCHKEY_CPU");  // NOLINT(concurrency-mt-unsafe)
    return CpuLevelNamed(name != nullptr ? name : "", HighestCpuLevel());
  }();
  return level;
}

bool HasShaInstructions() noexcept {
  static const bool has = MachineHasShaInstructions() && ChosenCpuLevel() != CpuLevel::Portable;
  return has;
}

}  // namespace latchkey
