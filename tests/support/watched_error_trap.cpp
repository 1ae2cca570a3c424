// The component's error trap, built once more to write through the spy. Every test program that has
// this file links it in place of the library's, whose text it is.
#include "diagnostics/error_trap.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/thread_state.h"
#include "tests/support/record_spy.h"

#define clsErrorObject test::SpiedRecord
#define ErrorRecord test::SpiedErrorRecord
#include "diagnostics/error_trap.cpp"  // NOLINT(bugprone-suspicious-include)
