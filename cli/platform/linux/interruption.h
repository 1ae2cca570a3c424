// Clean-up when a signal ends the process: removes the unfinished files and restores the echo of
// the terminal.
#pragma once

#include <termios.h>

#include <csignal>
#include <string>

namespace latchkey::cli {

// While it lives, blocks the signals that end the process, so that making something and recording
// its clean-up are one step. A signal that ends the process in another thread waits until this
// thread has released its own. Not to be nested.
class HeldSignals {
 public:
  HeldSignals() noexcept;
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals();

 private:
  sigset_t before_{};
};

// Adds a file to remove, and returns its number for KeepWhenInterrupted; -1 if there are more than
// kMostUnfinished. Call both with the signals held, from any thread.
inline constexpr int kMostUnfinished = 1024;
[[nodiscard]] int RemoveWhenInterrupted(const std::string& name) noexcept;
void KeepWhenInterrupted(int number) noexcept;

// Sets the terminal to restore; null for none. Call it with the signals held. One terminal at a
// time.
void RestoreWhenInterrupted(int terminal, const termios* state) noexcept;

// Removes those files and restores that terminal. For a process about to end, also in a handler.
void UndoUnfinished() noexcept;

}  // namespace latchkey::cli
