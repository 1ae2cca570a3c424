#include "cli/platform/input_file.h"

#include <windows.h>

#include <io.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "cli/platform/windows/handles.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

constexpr const char* kStandardInput = "standard input";

UniqueFile Open(const std::string& name) {
  // The system would stop at the NUL and open another file.
  if (name.find('\0') != std::string::npos) {
    throw FileError(ERROR_INVALID_NAME, "cannot open", name);
  }
  UniqueFile file = Owned(CreateFileW(platform::Widened(name).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) ThrowLastError("cannot open", name);
  return file;
}

UniqueFile StandardInput() {
  return CopyOf(GetStdHandle(STD_INPUT_HANDLE), "cannot read", kStandardInput);
}

// The result of ReadFile. A console read that Ctrl-C interrupts succeeds with no bytes, as at the
// end of the data, but this is not the end.
DWORD ReadOnce(HANDLE file, std::span<std::uint8_t> bytes, DWORD& count) {
  SetLastError(ERROR_SUCCESS);
  if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr)) {
    return GetLastError();
  }
  const bool interrupted = count == 0 && GetLastError() == ERROR_OPERATION_ABORTED;
  return interrupted ? ERROR_CANCELLED : ERROR_SUCCESS;
}

}  // namespace

// Records the thread that waits in a call, so that the call can be cancelled.
class InputFile::Interruption {
 public:
  // Enclose the calls that may wait. False if reading must stop.
  [[nodiscard]] bool BeginCall() {
    UniqueObject thread(OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId()));
    const std::lock_guard lock(mutex_);
    reader_ = std::move(thread);
    isReading_ = !stopped_;
    return isReading_;
  }

  void EndCall() {
    {
      const std::lock_guard lock(mutex_);
      isReading_ = false;
    }
    ended_.notify_all();
  }

  // The system cancels only a call that has begun; the next attempt cancels one about to begin.
  void Stop() {
    constexpr auto kInterval = std::chrono::milliseconds(1);
    std::unique_lock lock(mutex_);
    stopped_ = true;
    while (isReading_) {
      CancelSynchronousIo(reader_.Get());
      ended_.wait_for(lock, kInterval);
    }
  }

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  UniqueObject reader_;
  bool isReading_ = false;
  bool stopped_ = false;
};

InputFile::InputFile(InputFile&& other) noexcept = default;
InputFile::~InputFile() = default;

// A read from a regular file waits only for the disk.
void InputFile::AllowStop() {
  if (!Size()) interruption_ = std::make_unique<Interruption>();
}

void InputFile::StopReading() noexcept {
  if (interruption_) interruption_->Stop();
}

InputFile::InputFile(UniqueFile file, std::string name)
    : file_(std::move(file)), name_(std::move(name)) {}

InputFile::InputFile(const std::string& name)
    : InputFile(name == "-" ? StandardInput() : Open(name), name == "-" ? kStandardInput : name) {}

// The descriptors are those of the C run-time, which a parent of the same kind passes on.
InputFile InputFile::FromDescriptor(int descriptor) {
  const std::string name = "descriptor " + std::to_string(descriptor);
  auto* const handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  return {CopyOf(handle, "cannot read", name), name};
}

std::size_t InputFile::Read(std::span<std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kLargestTransfer));
    DWORD count = 0;
    if (interruption_ && !interruption_->BeginCall()) break;
    const DWORD reason = ReadOnce(HandleOf(file_), bytes.subspan(done, wanted), count);
    if (interruption_) interruption_->EndCall();
    if (reason == ERROR_BROKEN_PIPE) break;        // the other end is closed
    if (reason == ERROR_OPERATION_ABORTED) break;  // stopped
    if (reason != ERROR_SUCCESS) throw FileError(static_cast<int>(reason), "cannot read", name_);
    if (count == 0) break;
    done += count;
  }
  return done;
}

FileTimes InputFile::Times() const {
  FILETIME accessed{};
  FILETIME modified{};
  if (!GetFileTime(HandleOf(file_), nullptr, &accessed, &modified)) {
    ThrowLastError("cannot read", name_);
  }
  const auto joined = [](const FILETIME& time) {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32U |
                                     time.dwLowDateTime);
  };
  return {joined(accessed), joined(modified)};
}

std::optional<std::uint64_t> InputFile::Size() const {
  LARGE_INTEGER size;
  const bool known = GetFileType(HandleOf(file_)) == FILE_TYPE_DISK &&
                     GetFileSizeEx(HandleOf(file_), &size) != FALSE;
  return known ? std::optional(static_cast<std::uint64_t>(size.QuadPart)) : std::nullopt;
}

}  // namespace latchkey::cli
