// The compiler's run-time inside a module of ours.
#pragma once

namespace latchkey::platform {

// Gives back what the run-time that is linked into this module holds of the process: for a module
// about to be unloaded, after everything else, on the thread that unloads it. A process that loads
// and unloads the module often would otherwise run out of thread-local slots.
// Linux has one run-time for the whole process and does nothing here.
void ReleaseRunTime() noexcept;

}  // namespace latchkey::platform
