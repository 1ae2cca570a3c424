// latchkey, the command line.
#include <exception>
#include <new>

#include "cli/command_line.h"
#include "platform/command/arguments.h"
#include "platform/command/standard_streams.h"
#include "platform/command/terminal.h"
#include "platform/command/uncaught_failure.h"

namespace {

using latchkey::cli::ExitStatus;
using latchkey::platform::StandardStream;
using latchkey::platform::WriteText;

// For failures while the parser is made or while a failure is reported. Allocates nothing.
ExitStatus PrintPlainly(const char* text) noexcept {
  for (const char* const part : {"latchkey: ", text, "\n"}) WriteText(StandardStream::Error, part);
  return ExitStatus::Failed;
}

ExitStatus Run(int argc, const char* const* argv) noexcept {
  try {
    latchkey::cli::CommandLine commandLine;
    return commandLine.Run(latchkey::platform::ProgramArguments(argc, argv));
  } catch (const std::bad_alloc&) {
    return PrintPlainly(latchkey::platform::kOutOfMemory);
  } catch (const std::exception& error) {
    return PrintPlainly(error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  latchkey::platform::BeginMain();
  latchkey::platform::OccupyClosedStreams();
  return static_cast<int>(Run(argc, argv));
}
