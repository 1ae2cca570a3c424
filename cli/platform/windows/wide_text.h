// UTF-8, as the program keeps names and messages, and Windows' own wide text.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::cli {

// What is no UTF-8, or no UTF-16, becomes U+FFFD.
[[nodiscard]] std::wstring Widened(std::string_view utf8);
[[nodiscard]] std::string Narrowed(std::wstring_view wide);

}  // namespace latchkey::cli
