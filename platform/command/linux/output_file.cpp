#include "platform/command/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/command/file_error.h"
#include "platform/command/linux/descriptor_name.h"
#include "platform/command/linux/file_rights.h"
#include "platform/command/linux/given_descriptor.h"
#include "platform/command/linux/interruption.h"

namespace latchkey::platform {
namespace {

int DescriptorOf(const UniqueFile& file) { return static_cast<int>(file.Get()); }

// What the process has open is written on from where it stands, also when it is a regular file.
bool IsStream(const std::string& name) { return name == "-" || DescriptorNamed(name).has_value(); }

int StreamOf(const std::string& name) { return DescriptorNamed(name).value_or(STDOUT_FILENO); }

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

// What a link leads to; for all else the path itself.
std::string Followed(const std::string& path) {
  struct stat state {};
  if (::lstat(path.c_str(), &state) != 0 || !S_ISLNK(state.st_mode)) return path;
  std::array<char, PATH_MAX> resolved{};
  if (::realpath(path.c_str(), resolved.data()) == nullptr) {
    throw FileError(errno, "cannot follow the link", path);
  }
  return resolved.data();
}

// Gives a file its new name. Without `replace` it fails with EEXIST when there is a file already.
bool Rename(const std::string& from, const std::string& to, bool replace) {
  if (replace) return ::rename(from.c_str(), to.c_str()) == 0;
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // A file system without that call: a second name is refused where there is a file, too.
  if (::link(from.c_str(), to.c_str()) != 0) return false;
  ::unlink(from.c_str());
  return true;
}

// Puts the new name of a file on the disk. A file system that cannot has no need to.
void FlushFolder(const std::string& folder) {
  const UniqueFile file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file) static_cast<void>(::fsync(DescriptorOf(file)));
}

}  // namespace

OutputFile::OutputFile(const std::string& name, bool replace, Readers readers)
    : name_(name), replace_(replace), readers_(readers) {
  struct stat state {};
  const bool exists = !IsStream(name) && ::stat(name.c_str(), &state) == 0;
  if (IsStream(name) || (exists && !S_ISREG(state.st_mode))) {
    OpenAsItIs();
    return;
  }
  place_ = Followed(name);
  if (exists && !replace) throw FileError(EEXIST, "cannot create", name_);
  OpenBeside();
}

void OutputFile::OpenAsItIs() {
  if (IsStream(name_)) {
    const int stream = StreamOf(name_);
    if (name_ == "-") name_ = "standard output";
    file_ = CopyOfGiven(stream, "cannot write", name_);
    return;
  }
  file_.Reset(::open(name_.c_str(), O_WRONLY | O_CLOEXEC));
  if (!file_) throw FileError(errno, "cannot write", name_);
}

void OutputFile::OpenBeside() {
  std::string temporary = FolderOf(place_) + ".latchkey-XXXXXX";
  const HeldSignals held;
  const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) throw FileError(errno, "cannot create", name_);
  file_.Reset(descriptor);
  temporary_ = temporary;
  RemoveWhenInterrupted(temporary_);
}

OutputFile::~OutputFile() {
  if (temporary_.empty()) return;
  const HeldSignals held;
  ::unlink(temporary_.c_str());
  RemoveWhenInterrupted({});
}

void OutputFile::Write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(DescriptorOf(file_), bytes.data(), bytes.size());
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      throw FileError(errno, "cannot write", name_);
    }
  }
}

void OutputFile::Commit(const std::function<void()>& announce) {
  if (temporary_.empty()) return announce();
  SetRights(file_, place_, readers_);
  if (::fsync(DescriptorOf(file_)) != 0) throw FileError(errno, "cannot write", name_);
  announce();
  {
    const HeldSignals held;
    if (!Rename(temporary_, place_, replace_)) throw FileError(errno, "cannot create", name_);
    temporary_.clear();
    RemoveWhenInterrupted({});
  }
  file_.Reset();
  FlushFolder(FolderOf(place_));
}

}  // namespace latchkey::platform
