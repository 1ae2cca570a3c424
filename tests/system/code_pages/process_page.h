// The code page of the test's process.
#pragma once

#include <optional>

#include "tests/system/code_pages/visible_page.h"

namespace latchkey::test {

// Makes `number` the code page of the process, or makes sure that it is. Throws
// std::runtime_error otherwise.
void UsePage(unsigned number);

// What clients have to see, made from the platform's own conversion; nothing where the component
// brings the code page along.
std::optional<VisiblePage> PlatformPage();

}  // namespace latchkey::test
