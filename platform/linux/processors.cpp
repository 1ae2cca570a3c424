#include "platform/processors.h"

#include <sched.h>

#include <algorithm>

namespace latchkey::platform {

// The call fails on a machine with more processors than the set can hold, which counts as one.
std::size_t UsableProcessors() noexcept {
  cpu_set_t set;
  CPU_ZERO(&set);
  if (::sched_getaffinity(0, sizeof set, &set) != 0) return 1;
  return static_cast<std::size_t>(std::max(CPU_COUNT(&set), 1));
}

}  // namespace latchkey::platform
