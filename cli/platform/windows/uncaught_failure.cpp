#include "cli/platform/uncaught_failure.h"

namespace latchkey::cli {

// On Windows the run-time ends the process, and the system removes an unfinished output.
void BeginMain() noexcept {}

}  // namespace latchkey::cli
