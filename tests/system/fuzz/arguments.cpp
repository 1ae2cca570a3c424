// The reading of command lines: arguments that end at zero bytes. Nothing is carried out.
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
  std::reverse(arguments.begin(), arguments.end());  // as the parser wants a list of them
  static CommandLine commandLine;  // making one takes far longer than reading a line
  try {
    commandLine.Parser().parse(arguments);
  } catch (const CLI::Error& error) {
    static_cast<void>(error.what());
  } catch (const CommandError& error) {
    static_cast<void>(error.what());
  }
  return 0;
}
