// Conversions between the program's texts and Windows' wide text.
#pragma once

#include <string>
#include <string_view>

#include "latchkey/types.h"

namespace latchkey::platform {

// From UTF-8 and to UTF-8. Invalid UTF-8 or UTF-16 becomes U+FFFD.
[[nodiscard]] std::wstring Widened(std::string_view utf8);
[[nodiscard]] std::string Narrowed(std::wstring_view wide);

// The same characters.
[[nodiscard]] inline std::wstring Widened(TextView text) { return {text.begin(), text.end()}; }

}  // namespace latchkey::platform
