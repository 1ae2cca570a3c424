#include "cli/platform/terminal.h"

#include <bsd/readpassphrase.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "cli/platform/file_error.h"
#include "cli/platform/file_handle.h"
#include "cli/platform/linux/interruption.h"
#include "cli/platform/linux/locale_text.h"
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

// Restores the terminal, whose echo readpassphrase turns off, if a signal ends the process. That
// function itself does so for some of the signals only.
class RestoredTerminal {
 public:
  explicit RestoredTerminal(int terminal) {
    if (::tcgetattr(terminal, &before_) != 0) throw FileError(errno, "cannot use", kTerminal);
    const HeldSignals held;
    RestoreWhenInterrupted(terminal, &before_);
  }
  RestoredTerminal(const RestoredTerminal&) = delete;
  RestoredTerminal& operator=(const RestoredTerminal&) = delete;
  ~RestoredTerminal() {
    const HeldSignals held;
    RestoreWhenInterrupted(-1, nullptr);
  }

 private:
  termios before_{};
};

// More than a terminal's line can be.
constexpr std::size_t kLongestLine = 8192;

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

std::optional<WipedBytes> ReadHiddenLine(const std::string& prompt, TextForm form) {
  const UniqueFile terminal(::open(kTerminal, O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!terminal) return std::nullopt;
  const RestoredTerminal restored(static_cast<int>(terminal.Get()));
  WipedVector<char> line(kLongestLine);
  if (::readpassphrase(prompt.c_str(), line.data(), line.size(), RPP_REQUIRE_TTY) == nullptr) {
    throw FileError(errno, "cannot read", kTerminal);
  }
  const std::size_t length = std::strlen(line.data());
  if (length + 1 == line.size()) throw FileError(EMSGSIZE, "cannot read", kTerminal);
  WipedBytes bytes(line.data(), line.data() + length);
  return form == TextForm::Utf8 ? Utf8OfLocale(std::move(bytes), kTerminal) : bytes;
}

}  // namespace latchkey::cli
