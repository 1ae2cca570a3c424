// Disables a thread's cancellation during code that must run to its end.
#pragma once

namespace latchkey::platform {

// Disables cancellation of the calling thread for the scope. Cancellation is an exception that must
// not be swallowed: a handler that records it, or a noexcept function, would end the process. A
// request during the scope takes effect at the thread's first cancellation point after it. Scopes
// nest. Does nothing on Windows, where threads are not cancelled.
class CancellationHold {
 public:
  CancellationHold() noexcept;
  CancellationHold(const CancellationHold&) = delete;
  CancellationHold& operator=(const CancellationHold&) = delete;
  ~CancellationHold();  // NOLINT(performance-trivially-destructible): only on Windows

 private:
  [[maybe_unused]] int stateBefore_ = 0;
};

}  // namespace latchkey::platform
