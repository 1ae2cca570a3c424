// Failures that cannot be caught: before main, and in a destructor.
#pragma once

namespace latchkey::cli {

// Call it first in main. On Linux such a failure prints a line on standard error, removes an
// unfinished output and exits with status 1. Before main it is a failed operator new (objects at
// namespace scope allocate), which throws bad_alloc from this call on; later it is any call of
// std::terminate.
void BeginMain() noexcept;

// The message for lack of memory, the same as for that fault of an operation.
inline constexpr const char* kOutOfMemory = "Out of memory (number 7)";

}  // namespace latchkey::cli
