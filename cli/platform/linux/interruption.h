// What must be undone when a signal ends the process: the file that is not finished, and the echo
// of the terminal.
#pragma once

#include <termios.h>

#include <csignal>
#include <string>

namespace latchkey::cli {

// Holds back the signals that end the process while it lives, so that making something and noting
// that it must be undone are one step.
class HeldSignals {
 public:
  HeldSignals() noexcept;
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals();

 private:
  sigset_t before_{};
};

// The file to remove; an empty name for none. Call both with the signals held. One file and one
// terminal at a time.
void RemoveWhenInterrupted(const std::string& name) noexcept;

// The terminal to set back; null for none.
void RestoreWhenInterrupted(int terminal, const termios* state) noexcept;

// Removes that file and sets back that terminal. For a process about to end, also in a handler.
void UndoUnfinished() noexcept;

}  // namespace latchkey::cli
