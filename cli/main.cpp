// The command latchkey.
#include <exception>
#include <new>

#include "cli/command_line.h"
#include "cli/platform/arguments.h"
#include "cli/platform/standard_streams.h"
#include "cli/platform/terminal.h"
#include "cli/platform/uncaught_failure.h"

namespace {

using latchkey::cli::ExitStatus;
using latchkey::cli::StandardStream;
using latchkey::cli::WriteText;

// Reports failures in the parser's constructor or in the report itself. Allocates nothing.
ExitStatus PrintPlainly(const char* text) noexcept {
  for (const char* const part : {"latchkey: ", text, "\n"}) WriteText(StandardStream::Error, part);
  return ExitStatus::Failed;
}

ExitStatus Run(int argc, const char* const* argv) noexcept {
  try {
    latchkey::cli::CommandLine commandLine;
    return commandLine.Run(latchkey::cli::ProgramArguments(argc, argv));
  } catch (const std::bad_alloc&) {
    return PrintPlainly(latchkey::cli::kOutOfMemory);
  } catch (const std::exception& error) {
    return PrintPlainly(error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  latchkey::cli::BeginMain();
  latchkey::cli::OccupyClosedStreams();
  return static_cast<int>(Run(argc, argv));
}
