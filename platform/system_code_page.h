// The process's code page.
#pragma once

#include "base/code_page.h"

namespace latchkey::platform {

// On Windows the system's ANSI code page, on Linux the one of latchkey/code_page.h.
const CodePage& SystemCodePage();

}  // namespace latchkey::platform
