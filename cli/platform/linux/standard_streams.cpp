#include "cli/platform/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace latchkey::cli {

// An O_PATH descriptor can be neither read nor written, and the root folder always exists. It
// closes on exec, so that programs started from here see the same streams as this one.
void OccupyClosedStreams() noexcept {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const bool isClosed = ::fcntl(stream, F_GETFD) < 0;
    // The lowest free number is this one, as those below are taken by now.
    if (isClosed) static_cast<void>(::open("/", O_PATH | O_CLOEXEC));
  }
}

}  // namespace latchkey::cli
