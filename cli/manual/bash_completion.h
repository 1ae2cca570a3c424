// Completion of the command line in bash.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace latchkey::cli {

// The script, for the parser with all commands.
[[nodiscard]] std::string BashCompletion(const CLI::App& parser);

}  // namespace latchkey::cli
