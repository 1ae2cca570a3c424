#include "platform/processors.h"

#include <windows.h>

#include <algorithm>
#include <bit>

namespace latchkey::platform {

std::size_t UsableProcessors() noexcept {
  DWORD_PTR own = 0;
  DWORD_PTR all = 0;
  if (!GetProcessAffinityMask(GetCurrentProcess(), &own, &all)) return 1;
  return static_cast<std::size_t>(std::max(std::popcount(own), 1));
}

}  // namespace latchkey::platform
