// Threads that leave the process's signals to its own threads.
#pragma once

#include <functional>

namespace latchkey::platform {

// Calls `start`. The threads that it starts receive no signals that are sent to the process, only
// those that their own faults raise. On Windows, which has no signals, it only calls `start`.
void StartWithoutSignals(const std::function<void()>& start);

}  // namespace latchkey::platform
