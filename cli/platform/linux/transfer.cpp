#include "cli/platform/linux/transfer.h"

#include <poll.h>

#include <cerrno>

namespace latchkey::cli {

bool CanRepeat(int descriptor, short events) noexcept {
  if (errno == EINTR) return true;
  if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
  pollfd waited{descriptor, events, 0};
  while (::poll(&waited, 1, -1) < 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

}  // namespace latchkey::cli
