// Failures that cannot be caught: before main, and in a destructor.
#pragma once

namespace latchkey::cli {

// Call it first in main. On Linux, an uncaught failure prints a line on standard error, removes an
// unfinished output and exits with status 1. Before this call, a failed operator new is such a
// failure, because objects at namespace scope allocate. After it, operator new throws bad_alloc,
// and every call of std::terminate is such a failure; without a current exception it is reported as
// lack of memory.
void BeginMain() noexcept;

// The message for lack of memory; an operation's fault 7 has the same text.
inline constexpr const char* kOutOfMemory = "Out of memory (number 7)";

}  // namespace latchkey::cli
