// latchkey online.
#include "cli/command_line.h"

#include <nlohmann/json.hpp>
#include "cli/commands.h"
#include "cli/json.h"
#include "diagnostics/connectivity_probe.h"
#include "diagnostics/thread_state.h"

namespace latchkey::cli {
namespace {

ExitStatus RunOnline(const Report& report) {
  const bool connected = QueryConnectionExists();
  if (ErrorRecord().ErrorExists()) throw CommandError(RecordedFailure());
  if (!report.IsQuiet()) report.Text(connected ? "connected\n" : "not connected\n");
  report.Result(Json{{"connected", connected}});
  return connected ? ExitStatus::Done : ExitStatus::Failed;
}

}  // namespace

void AddOnlineCommand(CommandLine& commandLine) {
  commandLine.Add("online", "Check for a configured Internet connection: exit status 0 or 1",
                  "latchkey online --quiet && fetch-mail", RunOnline);
}

}  // namespace latchkey::cli
