// Keeps a thread's cancellation out of code that must run to its end.
#pragma once

namespace latchkey::platform {

// Holds off pthread_cancel on the calling thread for the scope. It is carried out as an exception
// that no handler may keep: one that records a fault, or a function that lets none out, would end
// the process. A request that comes meanwhile takes effect at the thread's first cancellation point
// after the scope. Scopes nest. Does nothing on Windows, where threads are not cancelled.
class CancellationHold {
 public:
  CancellationHold() noexcept;
  CancellationHold(const CancellationHold&) = delete;
  CancellationHold& operator=(const CancellationHold&) = delete;
  ~CancellationHold();

 private:
  int stateBefore_ = 0;
};

}  // namespace latchkey::platform
