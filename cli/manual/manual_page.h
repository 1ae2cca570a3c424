// The manual page, made from the commands' own help so that the two cannot differ.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace latchkey::cli {

// The text of latchkey.1 in roff, for the parser with all commands.
[[nodiscard]] std::string ManualPage(const CLI::App& parser, const std::string& version);

}  // namespace latchkey::cli
