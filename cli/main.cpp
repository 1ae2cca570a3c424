// latchkey, the command line.
#include "cli/command_line.h"
#include "platform/command/arguments.h"
#include "platform/command/standard_streams.h"

int main(int argc, char** argv) {
  latchkey::platform::OccupyClosedStreams();
  latchkey::cli::CommandLine commandLine;
  return static_cast<int>(commandLine.Run(latchkey::platform::ProgramArguments(argc, argv)));
}
