// The code page of the test's process.
#pragma once

#include <optional>

#include "tests/system/code_pages/visible_page.h"

namespace latchkey::test {

// Makes `number` the code page of the process, or makes sure that it is. Throws
// std::runtime_error otherwise.
void UsePage(unsigned number);

// The expected view of clients, from the platform's own conversion; nothing if the component
// implements the code page itself.
std::optional<VisiblePage> PlatformPage();

}  // namespace latchkey::test
