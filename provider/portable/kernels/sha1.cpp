#include "base/kernels/cpu_level.h"
#include "provider/portable/kernels/hashes.h"

namespace latchkey::provider {

const nettle_hash& Sha1() noexcept {
#ifdef LATCHKEY_X86_KERNELS
  if (HasShaInstructions()) return kSha1WithInstructions;
#endif
  return nettle_sha1;
}

}  // namespace latchkey::provider
