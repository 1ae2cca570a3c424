// Parsing of command lines: arguments that end at zero bytes. No command is run.
#include <string>

#include "cli/command_line.h"
#include "latchkey/fault.h"
#include "tests/system/fuzz/input.h"

using latchkey::cli::CommandError;
using latchkey::cli::CommandLine;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> arguments;
  std::string argument;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] != 0) {
      argument += static_cast<char>(data[i]);
    } else {
      arguments.push_back(std::exchange(argument, {}));
    }
  }
  if (!argument.empty()) arguments.push_back(argument);
  std::reverse(arguments.begin(), arguments.end());  // the order that the parser requires
  static CommandLine commandLine;  // construction takes far longer than parsing a line
  try {
    commandLine.Parser().parse(arguments);
  } catch (const CLI::Error& error) {
    static_cast<void>(error.what());
  } catch (const CommandError& error) {
    static_cast<void>(error.what());
  }
  return 0;
}
