// Gives a test the thread's module data, and the thread back as it was.
#pragma once

#include <utility>

#include "diagnostics/thread_state.h"

namespace latchkey::test {

// Replaces the thread's whole module data for the scope: services start as the platform's own, the
// record slot empty (make a clsMain inside the scope for one). Objects that hold provider handles
// must end before the scope does.
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
