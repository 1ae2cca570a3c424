#include "platform/system_random.h"

#include <sys/random.h>

#include <cerrno>

namespace latchkey::platform {

// A signal may shorten a long request or interrupt it before the first byte.
bool FillRandom(std::span<std::uint8_t> bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t filled = ::getrandom(bytes.data(), bytes.size(), 0);
    if (filled > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(filled));
    } else if (filled == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace latchkey::platform
