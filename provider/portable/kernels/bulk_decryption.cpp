#include "provider/portable/kernels/bulk_decryption.h"

namespace latchkey::provider {

const BulkDecryption<des::KeySchedule>& DesBulk(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
      return kDesBulkAvx512;
    case CpuLevel::Avx2:
      return kDesBulkAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kDesBulkNeon;
#endif
    default:
      return kDesBulkPortable;
  }
}

const BulkDecryption<Rc2Key>& Rc2Bulk(CpuLevel level) noexcept {
  switch (level) {
#ifdef LATCHKEY_X86_KERNELS
    case CpuLevel::Avx512:
      return kRc2BulkAvx512;
    case CpuLevel::Avx2:
      return kRc2BulkAvx2;
#elif defined(LATCHKEY_ARM_KERNELS)
    case CpuLevel::Neon:
      return kRc2BulkNeon;
#endif
    default:
      return kRc2BulkPortable;
  }
}

}  // namespace latchkey::provider
