// The component's error trap, compiled a second time so that it writes through the spy. A test
// program with this file links it instead of the library's error_trap.cpp.
#include "diagnostics/error_trap.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/thread_state.h"
#include "tests/support/record_spy.h"

// The names are those of the classes that the spies replace.
// NOLINTBEGIN(readability-identifier-naming)
#define clsErrorObject test::SpiedRecord
#define ErrorRecord test::SpiedErrorRecord
// NOLINTEND(readability-identifier-naming)
#include "diagnostics/error_trap.cpp"  // NOLINT(bugprone-suspicious-include)
