// Gives a test fresh per-thread state, and restores the earlier state afterwards.
#pragma once

#include <utility>

#include "diagnostics/thread_state.h"

namespace latchkey::test {

// Replaces the thread's whole state for the scope: the services are the platform's own, and no
// record exists (make a clsMain inside the scope for one). Objects that hold provider handles must
// be destroyed before the scope ends.
class ModuleScope {
 public:
  ModuleScope() : saved_(std::exchange(ThisThread(), ThreadState())) {}
  ModuleScope(const ModuleScope&) = delete;
  ModuleScope& operator=(const ModuleScope&) = delete;
  ~ModuleScope() { ThisThread() = std::move(saved_); }

  [[nodiscard]] platform::Services& Services() { return ThisThread().services; }

 private:
  ThreadState saved_;
};

}  // namespace latchkey::test
