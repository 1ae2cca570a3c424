// The running processes, which the probe counts on Linux instead of windows.
#pragma once

#include <sys/types.h>

#include <functional>

namespace latchkey::platform {

// Calls `visit` with the number of each process in one walk over `folder`, a mounted proc file
// system; not at all if the folder cannot be read. An exception from `visit` ends the walk and
// reaches the caller.
void VisitProcesses(const char* folder, const std::function<void(pid_t)>& visit);

}  // namespace latchkey::platform
