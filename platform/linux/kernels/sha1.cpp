#include "platform/linux/kernels/cpu_level.h"
#include "platform/linux/kernels/hashes.h"

namespace latchkey::platform {

const nettle_hash& Sha1() noexcept {
#ifdef LATCHKEY_X86_KERNELS
  if (HasShaInstructions()) return kSha1WithInstructions;
#endif
  return nettle_sha1;
}

}  // namespace latchkey::platform
