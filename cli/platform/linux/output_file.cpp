#include "cli/platform/output_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "cli/name_parts.h"
#include "cli/platform/file_error.h"
#include "cli/platform/linux/file_rights.h"
#include "cli/platform/linux/given_descriptor.h"
#include "cli/platform/linux/interruption.h"
#include "cli/platform/linux/transfer.h"
#include "cli/temporary_name.h"

namespace latchkey::cli {
namespace {

// A file that the process has open is written at its current position, also a regular file.
bool IsStream(const std::string& name) { return name == "-" || DescriptorNamed(name).has_value(); }

int StreamOf(const std::string& name) { return DescriptorNamed(name).value_or(STDOUT_FILENO); }

// Whether the name exists, and its state. Raises FileError when the system cannot say.
bool Exists(const std::string& path, struct stat& state) {
  if (::lstat(path.c_str(), &state) == 0) return true;
  if (errno != ENOENT) throw FileError(errno, "cannot create", path);
  return false;
}

// The target of a link; for other files the path itself.
std::string Followed(const std::string& path) {
  struct stat state {};
  if (!Exists(path, state) || !S_ISLNK(state.st_mode)) return path;
  std::array<char, PATH_MAX> resolved{};
  if (::realpath(path.c_str(), resolved.data()) == nullptr) {
    throw FileError(errno, "cannot follow the link", path);
  }
  return resolved.data();
}

// /dev/null, by its fixed number. Writing to it changes nothing.
bool IsNullDevice(const struct stat& state) {
  return S_ISCHR(state.st_mode) && state.st_rdev == makedev(1, 3);
}

// Opens a device or pipe for writing and checks it, since the name may now denote another file.
// Without `replace` only the null device is accepted, and a pipe without a reader fails instead of
// waiting.
UniqueFile OpenDevice(const std::string& name, bool replace) {
  const int waiting = replace ? 0 : O_NONBLOCK;
  UniqueFile file(::open(name.c_str(), O_WRONLY | O_CLOEXEC | waiting));
  if (!file) throw FileError(errno, "cannot write", name);
  struct stat state {};
  if (::fstat(DescriptorOf(file), &state) != 0) throw FileError(errno, "cannot write", name);
  if (S_ISREG(state.st_mode) || (!replace && !IsNullDevice(state))) {
    throw FileError(EEXIST, "cannot create", name);
  }
  if (!replace && ::fcntl(DescriptorOf(file), F_SETFL, 0) != 0) {
    throw FileError(errno, "cannot write", name);
  }
  return file;
}

// Gives a file its new name. Without `replace` it fails with EEXIST if the name exists. Raises
// FileError if the file has its new name but also keeps the old one.
bool Rename(const std::string& from, const std::string& to, bool replace) {
  if (replace) return ::rename(from.c_str(), to.c_str()) == 0;
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // A file system without that call also refuses a second name that exists.
  if (::link(from.c_str(), to.c_str()) != 0) return false;
  if (::unlink(from.c_str()) != 0) throw FileError(errno, "cannot remove", from);
  return true;
}

// Flushes the new name of a file to the disk. Also true if that is impossible: in a folder that may
// be written but not read, and on a file system without the call.
bool FlushFolder(const std::string& folder) {
  const UniqueFile file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!file) return errno == EACCES;
  return ::fsync(DescriptorOf(file)) == 0 || errno == EINVAL || errno == ENOSYS ||
         errno == EOPNOTSUPP;
}

// Locks a new file, so that RemoveLeftovers leaves it. False if another process found the file
// before and is removing it. A file system without locks has none for that process either.
bool Claim(const UniqueFile& file) {
  if (::flock(DescriptorOf(file), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
  struct stat state {};
  return ::fstat(DescriptorOf(file), &state) != 0 || state.st_nlink > 0;
}

}  // namespace

OutputFile::OutputFile(const std::string& name, bool replace, Readers readers)
    : name_(name), replace_(replace), readers_(readers) {
  if (IsStream(name)) {
    OpenAsItIs();
    return;
  }
  std::string place = Followed(name);
  struct stat state {};
  const bool exists = Exists(place, state);
  // A link made after the check.
  if (exists && S_ISLNK(state.st_mode)) throw FileError(ELOOP, "cannot follow the link", name_);
  const bool isFolder = exists && S_ISDIR(state.st_mode);  // opening it reports the right reason
  if (exists && !replace && !isFolder && !IsNullDevice(state)) {
    throw FileError(EEXIST, "cannot create", name_);
  }
  if (exists && !S_ISREG(state.st_mode)) {
    OpenAsItIs();
  } else {
    place_ = std::move(place);
    OpenTemporary();
  }
}

void OutputFile::OpenAsItIs() {
  if (IsStream(name_)) {
    const int stream = StreamOf(name_);
    if (name_ == "-") name_ = "standard output";
    file_ = CopyOfGiven(stream, "cannot write", name_);
    return;
  }
  file_ = OpenDevice(name_, replace_);
}

void OutputFile::OpenTemporary() {
  const std::string folder(BeforeLastPart(place_));
  do {
    RemoveTemporary();
    std::string temporary = folder + NewTemporaryName();
    if (temporary == folder) throw FileError(EIO, "cannot create", name_);
    const HeldSignals held;
    file_ = UniqueFile(
        ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file_) throw FileError(errno, "cannot create", name_);
    temporary_ = std::move(temporary);  // allocates nothing: a failure here would leave the file
    removal_ = RemoveWhenInterrupted(temporary_);
  } while (!Claim(file_));
}

void OutputFile::RemoveTemporary() noexcept {
  if (temporary_.empty()) return;
  const HeldSignals held;
  ::unlink(temporary_.c_str());
  KeepWhenInterrupted(removal_);
  temporary_.clear();
}

OutputFile::~OutputFile() { RemoveTemporary(); }

void OutputFile::Write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(DescriptorOf(file_), bytes.data(), bytes.size());
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (!CanRepeat(DescriptorOf(file_), POLLOUT)) {
      throw FileError(errno, "cannot write", name_);
    }
  }
}

void OutputFile::Commit() {
  Seal();
  Flush();
  GiveName();
  file_.Reset();
  FlushName();
}

void OutputFile::SetTimes(const FileTimes& times) {
  if (temporary_.empty()) return;
  constexpr std::int64_t kSecond = 1'000'000'000;
  const auto split = [](std::int64_t time) {
    const std::int64_t rest = (time % kSecond + kSecond) % kSecond;
    return timespec{static_cast<time_t>((time - rest) / kSecond), static_cast<long>(rest)};
  };
  const std::array<timespec, 2> pair{split(times.accessed), split(times.modified)};
  if (::futimens(DescriptorOf(file_), pair.data()) != 0) {
    throw FileError(errno, "cannot set the times", name_);
  }
}

void OutputFile::Seal() {
  if (!temporary_.empty()) SetRights(file_, place_, readers_);
}

void OutputFile::Flush() {
  if (temporary_.empty()) return;
  if (::fsync(DescriptorOf(file_)) != 0) throw FileError(errno, "cannot write", name_);
}

void OutputFile::GiveName() {
  if (temporary_.empty()) return;
  const HeldSignals held;
  if (!Rename(temporary_, place_, replace_)) throw FileError(errno, "cannot create", name_);
  temporary_.clear();
  KeepWhenInterrupted(removal_);
}

void OutputFile::FlushName() {
  if (place_.empty()) return;
  if (!FlushFolder(FolderOf(place_))) throw FileError(errno, "cannot write", name_);
}

}  // namespace latchkey::cli
