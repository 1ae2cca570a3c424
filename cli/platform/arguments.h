// The arguments of the program as UTF-8.
#pragma once

#include <string>
#include <vector>

namespace latchkey::cli {

// Returns all arguments after the program's name. On Linux they are the unchanged bytes, since file
// names are bytes there. On Windows they are the wide command line in UTF-8; main's are not used.
[[nodiscard]] std::vector<std::string> ProgramArguments(int count, const char* const* arguments);

}  // namespace latchkey::cli
