// The running processes, which the probe counts on Linux instead of windows.
#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace latchkey::platform {

using ProcessVisitor = std::function<void(pid_t)>;

// Calls `visit` with the number of each process in one walk over `folder`, a mounted proc file
// system; not at all if the folder cannot be read. An exception from `visit` ends the walk and
// reaches the caller.
void VisitProcesses(const char* folder, const ProcessVisitor& visit);

// Visits the running processes, and reuses those of the last walk over /proc within the same
// millisecond: a salt counts the processes for each of its letters, and the walks would take most
// of its time. Any number of threads may use it at once; while one thread does, each other one
// walks over /proc. It has no lock, because another thread could hold it while the process forks.
class RecentProcesses {
 public:
  // As VisitProcesses. `tick` is the current millisecond.
  void Visit(std::uint32_t tick, const ProcessVisitor& visit);

 private:
  [[nodiscard]] bool Holds(std::uint32_t tick) const noexcept;
  void Read(std::uint32_t tick);

  std::atomic<bool> isTaken_{false};
  std::uint32_t tick_ = 0;
  std::size_t count_ = 0;  // 0 before the first walk; above the array's size, not all are known
  std::array<pid_t, 1024> processes_{};
};

}  // namespace latchkey::platform
