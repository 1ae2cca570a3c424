// Text as the component sees it: a counted string of 16-bit characters that may be empty and may
// hold NUL characters.
#pragma once

#include <string>
#include <string_view>

namespace latchkey {

using Text = std::u16string;
using TextView = std::u16string_view;

}  // namespace latchkey
