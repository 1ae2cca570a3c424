// What is wrong with a command line.
#pragma once

#include <string>

#include "cli/failure.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace latchkey::cli {

// The command that was chosen, with its parents; the parser itself if none was.
[[nodiscard]] const CLI::App& ChosenCommand(const CLI::App& parser);

// The failure of a command line that the parser refused with `error`. An unknown word is reported
// before a missing one. `first` is the first argument.
[[nodiscard]] Failure UsageFailure(const CLI::App& parser, const CLI::ParseError& error,
                                   const std::string& first);

}  // namespace latchkey::cli
