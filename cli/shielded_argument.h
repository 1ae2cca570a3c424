// Arguments that the parser would not take as they are.
//
// To the parser "[a,b]" among several values is a list, and "++" ends a command's arguments. Both
// are names of files like others. A zero character, which no argument of a program can hold, stands
// behind them while the parser reads them, and is taken away from what it gives. The texts of its
// complaints end before the first zero.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace latchkey::cli {

// Puts the zero behind an argument that needs it.
void Shield(std::string& argument);

// Makes the options of all commands take it away again. Call it when all of them are there.
void UnshieldValues(CLI::App& parser);

}  // namespace latchkey::cli
