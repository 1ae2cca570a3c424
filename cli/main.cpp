// latchkey, the command line.
#include "cli/command_line.h"
#include "platform/command/arguments.h"

int main(int argc, char** argv) {
  latchkey::cli::CommandLine commandLine;
  return static_cast<int>(commandLine.Run(latchkey::platform::ProgramArguments(argc, argv)));
}
