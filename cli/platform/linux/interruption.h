// Clean-up when a signal ends the process: removes the unfinished file and restores the echo of the
// terminal.
#pragma once

#include <termios.h>

#include <csignal>
#include <string>

namespace latchkey::cli {

// Blocks the signals that end the process during its life, so that making something and recording
// its clean-up are one step.
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

// The terminal to restore; null for none.
void RestoreWhenInterrupted(int terminal, const termios* state) noexcept;

// Removes that file and restores that terminal. For a process about to end, also in a handler.
void UndoUnfinished() noexcept;

}  // namespace latchkey::cli
