// The arguments of the program as UTF-8.
#pragma once

#include <string>
#include <vector>

namespace latchkey::cli {

// All arguments after the program's name. On Linux the unchanged bytes, since file names are bytes
// there; on Windows the UTF-8 of the wide command line, independent of main's arguments.
[[nodiscard]] std::vector<std::string> ProgramArguments(int count, const char* const* arguments);

}  // namespace latchkey::cli
