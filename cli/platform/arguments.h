// The arguments of the program as UTF-8.
#pragma once

#include <string>
#include <vector>

namespace latchkey::cli {

// All arguments behind the program's name. On Linux the bytes as they came, since file names are
// bytes there; on Windows the UTF-8 of the wide command line, whatever main was given.
[[nodiscard]] std::vector<std::string> ProgramArguments(int count, const char* const* arguments);

}  // namespace latchkey::cli
