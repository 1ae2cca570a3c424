#include "cli/platform/linux/interruption.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstring>
#include <utility>

namespace latchkey::cli {
namespace {

// The signals that by default stop a process or do nothing, and the one that cannot be caught.
constexpr std::array kOtherSignals{SIGCHLD, SIGCONT, SIGKILL, SIGSTOP, SIGTSTP,
                                   SIGTTIN, SIGTTOU, SIGURG,  SIGWINCH};

// Read by the handler, and written only with the signals held.
std::array<char, PATH_MAX> fileName{};
int terminalDescriptor = -1;
termios terminalState{};

// Including crashes and real-time signals.
sigset_t EndingSignals() noexcept {
  sigset_t signals;
  sigfillset(&signals);
  for (const int signal : kOtherSignals) sigdelset(&signals, signal);
  return signals;
}

// Calls only async-signal-safe functions, then ends as without a handler, which is removed.
extern "C" void UndoAndEnd(int signal) {
  UndoUnfinished();
  ::raise(signal);
}

// A signal that the parent has set to be ignored (nohup) stays ignored.
void InstallHandlers() noexcept {
  static bool installed = false;
  if (std::exchange(installed, true)) return;
  struct sigaction action {};
  action.sa_handler = UndoAndEnd;
  action.sa_mask = EndingSignals();
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (int signal = 1; signal <= SIGRTMAX; ++signal) {
    struct sigaction old {};
    const bool ends = sigismember(&action.sa_mask, signal) == 1;
    if (ends && sigaction(signal, nullptr, &old) == 0 && old.sa_handler == SIG_DFL) {
      sigaction(signal, &action, nullptr);
    }
  }
}

}  // namespace

void UndoUnfinished() noexcept {
  if (fileName.front() != '\0') ::unlink(fileName.data());
  if (terminalDescriptor >= 0) ::tcsetattr(terminalDescriptor, TCSANOW, &terminalState);
}

HeldSignals::HeldSignals() noexcept {
  const sigset_t signals = EndingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

HeldSignals::~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void RemoveWhenInterrupted(const std::string& name) noexcept {
  InstallHandlers();
  const std::size_t length = std::min(name.size(), fileName.size() - 1);
  std::memcpy(fileName.data(), name.data(), length);
  fileName.at(length) = '\0';
}

void RestoreWhenInterrupted(int terminal, const termios* state) noexcept {
  InstallHandlers();
  terminalDescriptor = state != nullptr ? terminal : -1;
  if (state != nullptr) terminalState = *state;
}

}  // namespace latchkey::cli
