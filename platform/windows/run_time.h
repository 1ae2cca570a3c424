// The compiler's run-time linked into this module.
#pragma once

namespace latchkey::platform {

// Releases the process's resources that the run-time linked into this module holds. Call it last,
// on the thread that unloads the module. Otherwise a process that loads and unloads the module
// often would run out of thread-local slots.
void ReleaseRunTime() noexcept;

}  // namespace latchkey::platform
