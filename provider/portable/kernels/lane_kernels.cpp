#include "provider/portable/kernels/lane_kernels.h"

namespace latchkey::provider {
namespace {

constexpr CipherKernels kPortable{kDesLanesPortable, kRc2LanesPortable};
#ifdef LATCHKEY_X86_KERNELS
constexpr CipherKernels kAvx2{kDesLanesAvx2, kRc2LanesAvx2};
constexpr CipherKernels kAvx512{kDesLanesAvx512, kRc2LanesAvx512};
#elif defined(LATCHKEY_ARM_KERNELS)
constexpr CipherKernels kNeon{kDesLanesNeon, kRc2LanesNeon};
#endif

}  // namespace

const CipherKernels& KernelsOf(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
      return kAvx512;
    case CpuLevel::Avx2:
      return kAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kNeon;
#endif
    default:
      return kPortable;
  }
}

}  // namespace latchkey::provider
