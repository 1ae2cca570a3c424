#include "cli/platform/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>

#include "cli/platform/file_error.h"
#include "cli/platform/file_handle.h"
#include "cli/platform/linux/interruption.h"
#include "cli/platform/linux/transfer.h"

namespace latchkey::cli {
namespace {

constexpr unsigned kUsualColumns = 80;
constexpr const char* kTerminal = "/dev/tty";

int DescriptorOf(StandardStream stream) noexcept {
  return stream == StandardStream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

bool WriteAll(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (!CanRepeat(descriptor, POLLOUT)) {
      return false;
    }
  }
  return true;
}

// Keeps typed characters from being shown while it lives.
class EchoOff {
 public:
  explicit EchoOff(int terminal) : terminal_(terminal) {
    if (::tcgetattr(terminal_, &before_) != 0) throw FileError(errno, "cannot use", kTerminal);
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    silent.c_lflag |= ECHONL;
    const HeldSignals held;
    RestoreWhenInterrupted(terminal_, &before_);
    if (::tcsetattr(terminal_, TCSAFLUSH, &silent) == 0) return;
    const int reason = errno;
    RestoreWhenInterrupted(-1, nullptr);
    throw FileError(reason, "cannot use", kTerminal);
  }
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;
  ~EchoOff() {
    const HeldSignals held;
    ::tcsetattr(terminal_, TCSANOW, &before_);
    RestoreWhenInterrupted(-1, nullptr);
  }

 private:
  int terminal_;
  termios before_{};
};

std::optional<WipedBytes> ReadLine(int descriptor) {
  WipedBytes line;
  for (;;) {
    std::uint8_t byte = 0;
    const ssize_t count = ::read(descriptor, &byte, 1);
    if (count < 0 && !CanRepeat(descriptor, POLLIN)) {
      throw FileError(errno, "cannot read", kTerminal);
    }
    if (count == 0 && line.empty()) return std::nullopt;
    if (count == 0 || (count == 1 && byte == '\n')) return line;
    if (count == 1) line.push_back(byte);
  }
}

}  // namespace

bool IsTerminal(StandardStream stream) noexcept { return ::isatty(DescriptorOf(stream)) == 1; }

unsigned TerminalColumns(StandardStream stream) noexcept {
  winsize size{};
  const bool known = ::ioctl(DescriptorOf(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsualColumns;
}

bool WriteText(StandardStream stream, std::string_view text) noexcept {
  return WriteAll(DescriptorOf(stream), text);
}

std::optional<WipedBytes> ReadHiddenLine(std::string_view prompt) {
  const UniqueFile terminal(::open(kTerminal, O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!terminal) return std::nullopt;
  const int descriptor = static_cast<int>(terminal.Get());
  const EchoOff echoOff(descriptor);
  if (!WriteAll(descriptor, prompt)) throw FileError(errno, "cannot write", kTerminal);
  return ReadLine(descriptor);
}

}  // namespace latchkey::cli
