// Failures that cannot be caught: before main, and in a destructor.
#pragma once

namespace latchkey::cli {

// Call it first in main. On Linux, an uncaught failure prints a line on standard error, removes an
// unfinished output and exits with status 1. Uncaught failures are:
//
// - before this call, a failed operator new, because objects at namespace scope allocate;
// - after it, every call of std::terminate; without a current exception it is reported as lack of
//   memory. A failed operator new then throws bad_alloc.
void BeginMain() noexcept;

// The message for lack of memory; an operation's fault 7 has the same text.
inline constexpr const char* kOutOfMemory = "Out of memory (number 7)";

}  // namespace latchkey::cli
