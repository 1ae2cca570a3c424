// Untrusted text, made safe to show.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::cli {

// UTF-8 text on one line, without characters that a terminal obeys or that change the reading
// order: control characters (C0 and C1), line separators, marks of direction, and bytes that are
// not UTF-8 become \n and \xNN, byte by byte.
[[nodiscard]] std::string WithoutControls(std::string_view text);

}  // namespace latchkey::cli
