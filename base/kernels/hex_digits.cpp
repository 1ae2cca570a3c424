#include "base/kernels/hex_digits.h"

namespace latchkey {

const HexDigits& HexDigitsAt(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
    case CpuLevel::Avx2:
      return kHexDigitsAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kHexDigitsNeon;
#endif
    default:
      return kHexDigitsPortable;
  }
}

const HexDigits& FastestHexDigits() noexcept { return HexDigitsAt(ChosenCpuLevel()); }

}  // namespace latchkey
