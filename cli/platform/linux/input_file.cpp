#include "cli/platform/input_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "cli/platform/file_error.h"
#include "cli/platform/linux/given_descriptor.h"
#include "cli/platform/linux/transfer.h"

namespace latchkey::cli {
namespace {

constexpr const char* kStandardInput = "standard input";
constexpr const char* kCannotOpen = "cannot open";
constexpr const char* kCannotRead = "cannot read";

UniqueFile Opened(int descriptor, const char* action, const std::string& name) {
  if (descriptor < 0) throw FileError(errno, action, name);
  return UniqueFile(descriptor);
}

// A directory can be opened but not read; this reports the failure early.
UniqueFile Open(const std::string& name) {
  // The system would stop at the NUL and open another file.
  if (name.find('\0') != std::string::npos) throw FileError(EINVAL, kCannotOpen, name);
  if (const auto descriptor = DescriptorNamed(name)) RequireGiven(*descriptor, kCannotOpen, name);
  UniqueFile file = Opened(::open(name.c_str(), O_RDONLY | O_CLOEXEC), kCannotOpen, name);
  struct stat state {};
  if (::fstat(static_cast<int>(file.Get()), &state) == 0 && S_ISDIR(state.st_mode)) {
    throw FileError(EISDIR, kCannotOpen, name);
  }
  return file;
}

}  // namespace

// An event that becomes readable when reading must stop.
class InputFile::Interruption {
 public:
  explicit Interruption(const std::string& name)
      : event_(Opened(::eventfd(0, EFD_CLOEXEC), kCannotRead, name)) {}

  void Signal() const noexcept { ::eventfd_write(static_cast<int>(event_.Get()), 1); }

  // Waits until the file is readable, at its end or in error; returns false if reading must stop.
  [[nodiscard]] bool AwaitBytes(const UniqueFile& file) const noexcept {
    std::array<pollfd, 2> waited{pollfd{static_cast<int>(event_.Get()), POLLIN, 0},
                                 pollfd{static_cast<int>(file.Get()), POLLIN, 0}};
    while (::poll(waited.data(), waited.size(), -1) < 0 && errno == EINTR) {
    }
    return waited.front().revents == 0;
  }

 private:
  UniqueFile event_;
};

InputFile::InputFile(InputFile&& other) noexcept = default;
InputFile::~InputFile() = default;

// A read from a regular file waits only for the disk.
void InputFile::AllowStop() {
  if (!Size()) interruption_ = std::make_unique<Interruption>(name_);
}

void InputFile::StopReading() noexcept {
  if (interruption_) interruption_->Signal();
}

InputFile::InputFile(UniqueFile file, std::string name)
    : file_(std::move(file)), name_(std::move(name)) {}

InputFile::InputFile(const std::string& name)
    : InputFile(name == "-" ? CopyOfGiven(STDIN_FILENO, kCannotRead, kStandardInput) : Open(name),
                name == "-" ? kStandardInput : name) {}

InputFile InputFile::FromDescriptor(int descriptor) {
  const std::string name = "descriptor " + std::to_string(descriptor);
  return {CopyOfGiven(descriptor, kCannotRead, name), name};
}

std::size_t InputFile::Read(std::span<std::uint8_t> bytes) {
  const int descriptor = static_cast<int>(file_.Get());
  std::size_t done = 0;
  while (done < bytes.size()) {
    if (interruption_ && !interruption_->AwaitBytes(file_)) break;
    const ssize_t count = ::read(descriptor, bytes.data() + done, bytes.size() - done);
    if (count == 0) break;
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (interruption_ && errno == EAGAIN) {
      continue;  // the wait above can be interrupted
    } else if (!CanRepeat(descriptor, POLLIN)) {
      throw FileError(errno, kCannotRead, name_);
    }
  }
  return done;
}

FileTimes InputFile::Times() const {
  struct stat state {};
  if (::fstat(static_cast<int>(file_.Get()), &state) != 0) {
    throw FileError(errno, kCannotRead, name_);
  }
  const auto nanoseconds = [](const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
  };
  return {nanoseconds(state.st_atim), nanoseconds(state.st_mtim)};
}

std::optional<std::uint64_t> InputFile::Size() const {
  struct stat state {};
  if (::fstat(static_cast<int>(file_.Get()), &state) != 0 || !S_ISREG(state.st_mode)) return {};
  return static_cast<std::uint64_t>(state.st_size);
}

}  // namespace latchkey::cli
