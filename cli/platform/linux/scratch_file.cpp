#include "cli/platform/scratch_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "cli/platform/file_error.h"

namespace latchkey::cli {
namespace {

std::string ScratchFolder() {
  const char* const folder = ::secure_getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

}  // namespace

ScratchFile::ScratchFile() {
  const std::string folder = ScratchFolder();
  file_.Reset(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (file_) return;
  std::string name = folder + "/latchkey-XXXXXX";  // the file system does not support O_TMPFILE
  file_.Reset(::mkostemp(name.data(), O_CLOEXEC));
  if (!file_) throw FileError(errno, "cannot make a temporary file", folder);
  ::unlink(name.c_str());
}

void ScratchFile::Append(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::pwrite(static_cast<int>(file_.Get()), bytes.data(), bytes.size(),
                                   static_cast<off_t>(size_));
    if (count < 0) {
      if (errno == EINTR) continue;
      throw FileError(errno, "cannot write a temporary file", ScratchFolder());
    }
    size_ += static_cast<std::uint64_t>(count);
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

std::size_t ScratchFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::pread(static_cast<int>(file_.Get()), bytes.data() + done,
                                  bytes.size() - done, static_cast<off_t>(offset + done));
    if (count == 0) break;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw FileError(errno, "cannot read a temporary file", ScratchFolder());
    done += static_cast<std::size_t>(count);
  }
  return done;
}

}  // namespace latchkey::cli
