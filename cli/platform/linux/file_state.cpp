#include "cli/platform/file_state.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "cli/name_parts.h"
#include "cli/platform/file_handle.h"
#include "cli/platform/folder_reader.h"
#include "cli/temporary_name.h"

namespace latchkey::cli {
namespace {

FileKind KindOf(mode_t mode) noexcept {
  if (S_ISREG(mode)) return FileKind::File;
  return S_ISDIR(mode) ? FileKind::Folder : FileKind::Other;
}

UniqueFile OpenToLock(const char* name) {
  constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  UniqueFile file(::open(name, O_RDWR | kFlags));  // NFS locks only files open to write
  if (!file) file.Reset(::open(name, O_RDONLY | kFlags));
  return file;
}

// A running process holds the lock of its unfinished output. If the file got its final name after
// it was opened here, the temporary name no longer denotes it.
void RemoveLeftover(const char* name) {
  const UniqueFile file = OpenToLock(name);
  if (!file) return;
  const int descriptor = static_cast<int>(file.Get());
  struct stat locked {};
  struct stat named {};
  if (::fstat(descriptor, &locked) != 0 || !S_ISREG(locked.st_mode)) return;
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) return;
  if (::lstat(name, &named) != 0) return;
  if (named.st_dev == locked.st_dev && named.st_ino == locked.st_ino) ::unlink(name);
}

}  // namespace

FileState StateOf(const std::string& name, Links links) {
  struct stat state {};
  if (name.find('\0') != std::string::npos) return {.reason = EINVAL};
  const int flags = links == Links::Keep ? AT_SYMLINK_NOFOLLOW : 0;
  if (::fstatat(AT_FDCWD, name.c_str(), &state, flags) != 0) return {.reason = errno};
  return {.kind = KindOf(state.st_mode),
          .size = static_cast<std::uint64_t>(state.st_size),
          .identity = {static_cast<std::uint64_t>(state.st_dev),
                       static_cast<std::uint64_t>(state.st_ino)}};
}

bool IsSeparator(char character) noexcept { return character == '/'; }

std::string FoldedCase(const std::string& name) { return name; }

void RemoveLeftovers(const std::string& folder) {
  FolderReader entries(folder);
  for (std::string name; entries.Next(name);) {
    if (IsTemporaryName(name)) RemoveLeftover(Joined(folder, name).c_str());
  }
}

}  // namespace latchkey::cli
