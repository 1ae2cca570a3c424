// Arguments that the parser would misread.
//
// To the parser "[a,b]" among several values is a list, and "++" ends a command's arguments. Both
// are valid file names. A zero character, which no argument of a program can contain, is appended
// while the parser reads them, and removed from its result. The parser's error texts end before the
// first zero.
#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace latchkey::cli {

// Appends a zero character to an argument that the parser would misread.
void Shield(std::string& argument);

// The argument without the zero character.
[[nodiscard]] std::string Unshielded(std::string value);

// Makes the options of all commands remove the zero character. Call it after all commands are
// added.
void UnshieldValues(CLI::App& parser);

}  // namespace latchkey::cli
