#include "platform/system_random.h"

#include <windows.h>

#include <algorithm>

// advapi32's RtlGenRandom, under its exported name.
#include <ntsecapi.h>

namespace latchkey::platform {

bool FillRandom(std::span<std::uint8_t> bytes) noexcept {
  constexpr std::size_t kLargestRequest = 0x7FFFFFFF;
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), kLargestRequest);
    if (!RtlGenRandom(bytes.data(), static_cast<ULONG>(count))) return false;
    bytes = bytes.subspan(count);
  }
  return true;
}

}  // namespace latchkey::platform
