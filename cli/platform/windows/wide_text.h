// Conversions between UTF-8, the program's form of names and messages, and Windows' wide text.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::cli {

// Invalid UTF-8 and UTF-16 become U+FFFD.
[[nodiscard]] std::wstring Widened(std::string_view utf8);
[[nodiscard]] std::string Narrowed(std::wstring_view wide);

}  // namespace latchkey::cli
