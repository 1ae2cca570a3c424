// Text from elsewhere, made safe to show.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::cli {

// UTF-8 text on one line, with nothing that a terminal obeys or that changes the order of what is
// read: control characters (C0 and C1), line separators, marks of direction, and bytes that are no
// UTF-8 become \n and \xNN, byte by byte.
[[nodiscard]] std::string WithoutControls(std::string_view text);

}  // namespace latchkey::cli
