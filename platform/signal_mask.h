// Threads that leave the process's signals to its own threads.
#pragma once

#include <functional>

namespace latchkey::platform {

// Calls `start`. Threads that it starts take no signal that is sent to the process; those that a
// fault of the thread itself raises stay as they are. On Windows, which has no signals, only calls.
void StartWithoutSignals(const std::function<void()>& start);

}  // namespace latchkey::platform
