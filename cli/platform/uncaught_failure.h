// Failures where nothing can catch them: before main, and in a destructor.
#pragma once

namespace latchkey::cli {

// Call it first in main. On Linux such a failure ends the process with a line on standard error and
// status 1, and nothing of an unfinished output stays. Before main that is an operator new without
// memory (objects at namespace scope allocate), which raises bad_alloc from this call on; later it
// is what std::terminate is called for.
void BeginMain() noexcept;

// What the line says when memory is short, as for that fault of an operation.
inline constexpr const char* kOutOfMemory = "Out of memory (number 7)";

}  // namespace latchkey::cli
