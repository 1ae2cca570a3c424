#include "cli/platform/linux/interruption.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstring>

namespace latchkey::cli {
namespace {

// The signals that by default stop a process or do nothing, and the one that cannot be caught.
constexpr std::array kOtherSignals{SIGCHLD, SIGCONT, SIGKILL, SIGSTOP, SIGTSTP,
                                   SIGTTIN, SIGTTOU, SIGURG,  SIGWINCH};

// A file to remove. The handler reads names that are Set.
struct Unfinished {
  enum State { Free, Taken, Set };
  std::atomic<State> state{Free};
  std::array<char, PATH_MAX> name{};
};
std::array<Unfinished, kMostUnfinished> unfinished;

// Read by the handler, and written only with the signals held.
int terminalDescriptor = -1;
termios terminalState{};

// The threads that hold the signals, and whether the process is about to end. Each side writes its
// own variable and then reads the other's, so that one of them sees the other.
std::atomic<int> holders{0};
std::atomic<bool> isEnding{false};

// Including crashes and real-time signals.
sigset_t EndingSignals() noexcept {
  sigset_t signals;
  sigfillset(&signals);
  for (const int signal : kOtherSignals) sigdelset(&signals, signal);
  return signals;
}

// Waits until no other thread holds the signals: what these make is then recorded. The number of
// attempts only guards against a thread that waits for a file system.
void AwaitHolders() noexcept {
  constexpr int kAttempts = 5000;
  isEnding = true;
  for (int i = 0; i < kAttempts && holders != 0; ++i) ::poll(nullptr, 0, 1);
}

// Calls only async-signal-safe functions, then ends as without a handler, which is removed.
extern "C" void UndoAndEnd(int signal) {
  AwaitHolders();
  UndoUnfinished();
  ::raise(signal);
}

// A signal that the parent has set to be ignored (nohup) stays ignored.
bool SetHandlers() noexcept {
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
  return true;
}

void InstallHandlers() noexcept { [[maybe_unused]] static const bool installed = SetHandlers(); }

}  // namespace

void UndoUnfinished() noexcept {
  for (const Unfinished& file : unfinished) {
    if (file.state == Unfinished::Set) ::unlink(file.name.data());
  }
  if (terminalDescriptor >= 0) ::tcsetattr(terminalDescriptor, TCSANOW, &terminalState);
}

HeldSignals::HeldSignals() noexcept {
  const sigset_t signals = EndingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, &before_);
  ++holders;
  if (!isEnding) return;
  --holders;
  for (;;) ::pause();  // another thread is ending the process
}

HeldSignals::~HeldSignals() {
  --holders;
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

int RemoveWhenInterrupted(const std::string& name) noexcept {
  InstallHandlers();
  for (int i = 0; i < kMostUnfinished; ++i) {
    Unfinished& file = unfinished[static_cast<std::size_t>(i)];
    Unfinished::State expected = Unfinished::Free;
    if (name.size() >= file.name.size()) break;
    if (!file.state.compare_exchange_strong(expected, Unfinished::Taken)) continue;
    std::memcpy(file.name.data(), name.c_str(), name.size() + 1);
    file.state = Unfinished::Set;
    return i;
  }
  return -1;
}

void KeepWhenInterrupted(int number) noexcept {
  if (number >= 0) unfinished[static_cast<std::size_t>(number)].state = Unfinished::Free;
}

void RestoreWhenInterrupted(int terminal, const termios* state) noexcept {
  InstallHandlers();
  terminalDescriptor = state != nullptr ? terminal : -1;
  if (state != nullptr) terminalState = *state;
}

}  // namespace latchkey::cli
