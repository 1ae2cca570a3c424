// Windows' wide text, made of the program's texts and back.
#pragma once

#include <string>
#include <string_view>

#include "latchkey/types.h"

namespace latchkey::platform {

// From UTF-8 and to it. What is no UTF-8, or no UTF-16, becomes U+FFFD.
[[nodiscard]] std::wstring Widened(std::string_view utf8);
[[nodiscard]] std::string Narrowed(std::wstring_view wide);

// The same characters.
[[nodiscard]] inline std::wstring Widened(TextView text) { return {text.begin(), text.end()}; }

}  // namespace latchkey::platform
