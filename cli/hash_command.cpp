// latchkey hash.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/algorithm_names.h"
#include "cli/alternatives.h"
#include "cli/checksum_check.h"
#include "cli/command_line.h"
#include "cli/commands.h"

namespace latchkey::cli {
namespace {

struct Options {
  std::string algorithm = "md5";
  LineForm form;
  bool check = false;
  CheckOptions checks;
  std::vector<std::string> files{"-"};
};

void RequireCheck(bool given, const char* name) {
  if (given) throw WrongUsage(std::string(name) + " requires --check");
}

void CheckUsage(const Options& options) {
  if (options.check) {
    if (options.form.tagged)
      throw WrongUsage("--tag cannot be used with --check, which reads both forms");
    if (options.form.zero) throw WrongUsage("--zero cannot be used with --check");
    return;
  }
  RequireCheck(options.checks.status, "--status");
  RequireCheck(options.checks.warn, "--warn");
  RequireCheck(options.checks.strict, "--strict");
  RequireCheck(options.checks.ignoreMissing, "--ignore-missing");
}

void Print(const Options& options, HashRun& run, const Report& report) {
  const ChecksumForm form = ChecksumFormOf(run.Hash());
  for (const std::string& file : options.files) {
    try {
      const std::string digest = run.DigestOf(file);
      report.Text(WrittenLine({digest, file}, form, options.form));
      run.Add({{"file", file}, {"digest", digest}});
    } catch (const FileError& error) {
      run.Fail(file, FailureOf(error));
    }
  }
}

ExitStatus RunHash(const Options& options, const Report& report) {
  CheckUsage(options);
  HashRun run(NumberOf(options.algorithm, HashNames()), options.checks.status, report);
  Json sums = Json::object();
  if (options.check) {
    ChecksumCheck check(options.checks, run, report);
    for (const std::string& list : options.files) check.Check(list);
    check.Finish(sums);
  } else {
    Print(options, run, report);
  }
  Json result{{"algorithm", options.algorithm}, {"results", run.Results()}};
  result.update(sums);
  report.Result(result);
  return run.Failed() ? ExitStatus::Failed : ExitStatus::Done;
}

void AddOptions(CLI::App& command, Options& options) {
  AddChoice(command, "-a,--algorithm", options.algorithm, "The hash (md5)", HashNames(),
            Numbers::Taken);
  command.add_flag("--tag", options.form.tagged, "Print lines as BSD does: MD5 (FILE) = digest");
  command.add_flag("-z,--zero", options.form.zero,
                   "End each line with NUL instead of a line feed, and escape no name");
  command.add_flag("-c,--check", options.check,
                   "Read digests from the files and check them; with --quiet, print only failures");
  command.add_flag("--status", options.checks.status,
                   "With --check, print nothing; report through the exit status");
  command.add_flag("-w,--warn", options.checks.warn,
                   "With --check, report each improperly formatted line");
  command.add_flag("--strict", options.checks.strict,
                   "With --check, fail if a line is improperly formatted");
  command.add_flag("--ignore-missing", options.checks.ignoreMissing,
                   "With --check, skip files that do not exist");
  command.add_option("FILE", options.files, "Read these files; - is standard input (the default)")
      ->type_name("");
}

}  // namespace

void AddHashCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<Options>();
  AddOptions(
      commandLine.Add("hash", "Print or check digests of files, as md5sum does",
                      "latchkey hash -a sha1 *.pdf >SHA1SUMS && latchkey hash -a sha1 -c SHA1SUMS",
                      [options](Report& report) { return RunHash(*options, report); }),
      *options);
}

}  // namespace latchkey::cli
