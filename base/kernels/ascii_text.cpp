#include "base/kernels/ascii_text.h"

namespace latchkey {

const AsciiText& AsciiTextAt(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
    case CpuLevel::Avx2:
      return kAsciiTextAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kAsciiTextNeon;
#endif
    default:
      return kAsciiTextPortable;
  }
}

const AsciiText& FastestAsciiText() noexcept { return AsciiTextAt(ChosenCpuLevel()); }

}  // namespace latchkey
