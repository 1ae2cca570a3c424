#include "cli/platform/linux/given_descriptor.h"

#include <fcntl.h>

#include <cerrno>

#include "cli/platform/file_error.h"

namespace latchkey::cli {

void RequireGiven(int descriptor, const char* action, const std::string& name) {
  const int flags = ::fcntl(descriptor, F_GETFD);
  if (flags < 0 || (flags & FD_CLOEXEC) != 0) throw FileError(EBADF, action, name);
}

UniqueFile CopyOfGiven(int descriptor, const char* action, const std::string& name) {
  RequireGiven(descriptor, action, name);
  UniqueFile copy(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
  if (!copy) throw FileError(errno, action, name);
  return copy;
}

}  // namespace latchkey::cli
