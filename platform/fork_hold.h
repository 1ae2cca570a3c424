// Functions that run before and after each fork of the process.
#pragma once

namespace latchkey::platform {

// Calls `hold` before each fork from now on, and `release` after it in both processes; neither may
// throw. A lock that `hold` takes is free in the child. Raises std::bad_alloc. On Windows, which
// has no fork, it does nothing.
void HoldDuringFork(void (*hold)(), void (*release)());

}  // namespace latchkey::platform
