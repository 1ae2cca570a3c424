// The threads of this process, which the probe counts on Linux instead of windows.
#pragma once

#include <sys/types.h>

#include <functional>

namespace latchkey::platform {

// Calls `visit` with the number of each thread in one walk over `folder`, the folder task of a
// process in /proc; not at all if it cannot be read. An exception from `visit` ends the walk and
// reaches the caller.
void VisitThreads(const char* folder, const std::function<void(pid_t)>& visit);

}  // namespace latchkey::platform
