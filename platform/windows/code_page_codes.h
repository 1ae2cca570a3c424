// The codes of a Windows code page, queried from the system one by one.
#pragma once

#include <windows.h>

#include <cstdint>

#include "base/code_page.h"

namespace latchkey::platform {

// `page` is a number or CP_ACP. The results are those that a CodePage is made from.
[[nodiscard]] CodePage::HighHalf HighHalfOf(UINT page);
[[nodiscard]] std::uint32_t LongCodeOf(UINT page, char16_t character);

}  // namespace latchkey::platform
