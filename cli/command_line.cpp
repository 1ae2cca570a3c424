#include "cli/command_line.h"

#include <algorithm>
#include <new>
#include <sstream>
#include <utility>

#include "base/faults.h"
#include "cli/commands.h"
#include "cli/output_options.h"
#include "cli/shielded_argument.h"
#include "diagnostics/thread_state.h"

namespace latchkey::cli {
namespace {

constexpr const char* kDescription =
    "Encrypts, decrypts and hashes files as the Windows CryptoAPI does under a password.\n"
    "The algorithms are old: use them to exchange data with systems that already use them.";

// For usage errors, which may occur before the parser has read the option. Arguments after "--" are
// file names.
bool AsksForJson(const std::vector<std::string>& arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  return std::find(arguments.begin(), end, "--json") != end;
}

// Records whether memory runs out during its lifetime, because a stream hides that and drops text.
class MemoryWatch {
 public:
  MemoryWatch() noexcept : before_(std::set_new_handler(Note)) { ranOut = false; }
  MemoryWatch(const MemoryWatch&) = delete;
  MemoryWatch& operator=(const MemoryWatch&) = delete;
  ~MemoryWatch() { std::set_new_handler(before_); }

  static void RequireEnough() {
    if (ranOut) throw std::bad_alloc();
  }

 private:
  static void Note() {
    ranOut = true;
    throw std::bad_alloc();
  }

  static inline bool ranOut = false;
  std::new_handler before_;
};

}  // namespace

CommandLine::CommandLine() : parser_(kDescription, "latchkey") {
  parser_.set_version_flag("--version", "latchkey " LATCHKEY_VERSION, "Print the version and exit");
  parser_.set_help_flag("-h,--help", "Print this help and exit");
  parser_.allow_windows_style_options(false);  // a name may start with a slash
  parser_.require_subcommand(1);
  parser_.footer("Run 'latchkey COMMAND --help' for the options of a command.");
  AddCipherCommands(*this);
  AddIdentifyCommand(*this);
  AddHashCommand(*this);
  AddRandomCommands(*this);
  AddHexCommand(*this);
  AddOnlineCommand(*this);
  AddErrorsCommand(*this);
  UnshieldValues(parser_);
}

CLI::App& CommandLine::Add(const char* name, const char* description, const std::string& example,
                           Action action) {
  CLI::App& command = *parser_.add_subcommand(name, description);
  command.add_flag("--json", options_.json, "Print results and failures as JSON");
  command.add_flag("-q,--quiet", options_.quiet, "Print no progress and no hints");
  command.footer("Example:\n  " + example);
  command.callback([this, action = std::move(action)] { chosen_ = action; });
  return command;
}

ExitStatus CommandLine::Run(std::vector<std::string> arguments) {
  const std::string first = arguments.empty() ? "" : arguments.front();
  const bool wantsJson = AsksForJson(arguments);
  for (std::string& argument : arguments) Shield(argument);
  std::reverse(arguments.begin(), arguments.end());  // the parser reads them from the back
  try {
    parser_.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    options_.json = wantsJson;  // the parser may not have reached it
    return ReportParseError(error, first);
  }
  return RunChosen();
}

// The parser throws for --help and --version too.
ExitStatus CommandLine::ReportParseError(const CLI::ParseError& error, const std::string& first) {
  std::ostringstream help;
  std::ostringstream complaint;
  const MemoryWatch watch;
  const bool isComplaint = parser_.exit(error, help, complaint) != 0;
  MemoryWatch::RequireEnough();
  if (!isComplaint) {
    options_ = {};
    chosen_ = [text = help.str()](Report& report) {
      report.Text(text);
      return ExitStatus::Done;
    };
    return RunChosen();
  }
  const auto chosen = parser_.get_subcommands();
  const bool isUnknown = chosen.empty() && !first.empty() && !first.starts_with('-');
  const Failure failure =
      WrongUsage(isUnknown ? "no such command: " + first : error.what(),
                 "run 'latchkey " + (chosen.empty() ? "" : chosen.front()->get_name() + " ") +
                     "--help' for the options")
          .Get();
  Report report(options_);
  if (!chosen.empty() && WritesDataToStandardOutput(*chosen.front())) report.GiveOutputToData();
  report.Fail(failure);
  return failure.status;
}

ExitStatus CommandLine::RunChosen() {
  const ErrorRecordScope record;
  Report report(options_);
  Failure failure;
  try {
    return chosen_(report);
  } catch (const CommandError& error) {
    failure = error.Get();
  } catch (const FileError& error) {
    failure = FailureOf(error);
  } catch (...) {
    failure = FailureOf(CurrentFault());
  }
  report.Fail(failure);
  return failure.status;
}

}  // namespace latchkey::cli
