#include <stdexcept>

#include "latchkey/code_page.h"
#include "tests/system/code_pages/process_page.h"

namespace latchkey::test {

void UsePage(unsigned number) {
  if (SetCodePage(number) != CodePageChoice::Accepted) {
    throw std::runtime_error("the code page cannot be set");
  }
}

std::optional<VisiblePage> PlatformPage() { return {}; }

}  // namespace latchkey::test
