#include "platform/signal_mask.h"

#include <csignal>

namespace latchkey::platform {
namespace {

// Blocks the signals for the calling thread, from which a thread that it starts inherits them.
class BlockedSignals {
 public:
  BlockedSignals() noexcept {
    sigset_t blocked;
    ::sigfillset(&blocked);
    for (const int fault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP}) {
      ::sigdelset(&blocked, fault);
    }
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before_);
  }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

void StartWithoutSignals(const std::function<void()>& start) {
  const BlockedSignals blocked;
  start();
}

}  // namespace latchkey::platform
