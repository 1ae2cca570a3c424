// The command line, to which every command is added.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "cli/failure.h"
#include "cli/report.h"

namespace latchkey::cli {

// Runs a command after its options are read. Throws CommandError, FileError or Fault for a failure
// that ends it.
using Action = std::function<ExitStatus(Report& report)>;

class CommandLine {
 public:
  CommandLine();

  // The parser with all commands, for parsing without running one.
  [[nodiscard]] CLI::App& Parser() noexcept { return parser_; }

  // Adds a command with --json and --quiet; `example` ends its help.
  CLI::App& Add(const char* name, const char* description, const std::string& example,
                Action action);

  // Adds a command as Add does, but to a group of commands.
  CLI::App& AddTo(CLI::App& group, const char* name, const char* description,
                  const std::string& example, Action action);

  // Adds a group: a name that must be followed by the name of one of its commands.
  CLI::App& AddGroup(const char* name, const char* description);

  // Reads the arguments (UTF-8, without the program's name), runs the command that they choose,
  // reports its failure, and returns the exit status.
  [[nodiscard]] ExitStatus Run(std::vector<std::string> arguments);

 private:
  void AskForHelp(std::vector<std::string>& arguments) const;
  [[nodiscard]] ExitStatus ReportParseError(const CLI::ParseError& error, const std::string& first);
  [[nodiscard]] ExitStatus RunChosen();

  CLI::App parser_;
  ReportOptions options_;
  Action chosen_;
};

}  // namespace latchkey::cli
