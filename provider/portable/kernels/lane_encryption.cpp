#include "provider/portable/kernels/lane_encryption.h"

namespace latchkey::provider {

const LaneEncryption<des::KeySchedule>& DesLaneEncryption(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
      return kDesLanesAvx512;
    case CpuLevel::Avx2:
      return kDesLanesAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kDesLanesNeon;
#endif
    default:
      return kDesLanesPortable;
  }
}

const LaneEncryption<Rc2Key>& Rc2LaneEncryption(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
      return kRc2LanesAvx512;
    case CpuLevel::Avx2:
      return kRc2LanesAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kRc2LanesNeon;
#endif
    default:
      return kRc2LanesPortable;
  }
}

}  // namespace latchkey::provider
