// latchkey hash.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/algorithm_names.h"
#include "cli/alternatives.h"
#include "cli/checksum_file.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/file_digest.h"
#include "cli/json.h"
#include "cli/platform/input_file.h"
#include "crypto/open_provider.h"

namespace latchkey::cli {
namespace {

struct Options {
  std::string algorithm = "md5";
  bool check = false;
  bool status = false;
  std::vector<std::string> files{"-"};
};

// Computes or checks the digests of files, and collects the results.
class Hashing {
 public:
  Hashing(const Options& options, const Report& report)
      : options_(options),
        report_(report),
        number_(NumberOf(options.algorithm, HashNames())),
        context_(OpenProvider(provider::SharedCryptoProvider(), false)) {
    if (!context_) throw CommandError(FailureAt(check::kHashProvider));
  }

  void Print(const std::string& file) {
    const std::optional<std::string> digest = DigestOf(file);
    if (!digest) return;
    report_.Text(ChecksumLine(*digest, file) + "\n");
    results_.push_back({{"file", file}, {"digest", *digest}});
  }

  void Check(const std::string& listName);

  ExitStatus Finish() {
    Json result{{"algorithm", options_.algorithm}, {"results", results_}};
    if (options_.check) {
      result["mismatches"] = mismatches_;
      result["unread"] = unread_;
      result["improper_lines"] = improper_;
      PrintSums();
    }
    report_.Result(result);
    return failed_ ? ExitStatus::Failed : ExitStatus::Done;
  }

 private:
  // Reports the failure and returns nothing if the file cannot be read.
  std::optional<std::string> DigestOf(const std::string& file);
  // Reports a failure that does not end the command.
  void ReportFailure(const std::string& file, const Failure& failure);
  void CheckLines(const std::vector<std::string>& lines, const std::string& listName);
  void CheckFile(const Checksum& expected);
  void PrintSums() const;

  const Options& options_;
  const Report& report_;
  std::int16_t number_;
  UniqueContext context_;
  Json results_ = Json::array();
  bool failed_ = false;
  std::size_t mismatches_ = 0;
  std::size_t unread_ = 0;
  std::size_t improper_ = 0;
};

std::optional<std::string> Hashing::DigestOf(const std::string& file) {
  try {
    InputFile input(file);
    Progress progress(input.Size(), report_.IsQuiet() || options_.status);
    return FileDigest(context_, number_, input, progress);
  } catch (const FileError& error) {
    ReportFailure(file, FailureOf(error));
    return std::nullopt;
  }
}

void Hashing::ReportFailure(const std::string& file, const Failure& failure) {
  failed_ = true;
  if (report_.IsJson()) {
    results_.push_back({{"file", file}, {"error", Report::ErrorObject(failure)}});
  } else if (!options_.status) {
    report_.Fail(failure);
  }
}

// The lines of a list. They are read at once, because lists are short.
std::vector<std::string> LinesOf(const std::string& name) {
  InputFile input(name);
  std::string text;
  std::vector<std::uint8_t> piece(1 << 16);
  for (std::size_t count = piece.size(); count == piece.size();) {
    count = input.Read(piece);
    text.append(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  }
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const bool hasReturn = end > start && text[end - 1] == '\r';
    lines.push_back(text.substr(start, end - start - (hasReturn ? 1 : 0)));
    start = end + 1;
  }
  return lines;
}

void Hashing::Check(const std::string& listName) {
  std::vector<std::string> lines;
  try {
    lines = LinesOf(listName);
  } catch (const FileError& error) {
    return ReportFailure(listName, FailureOf(error));
  }
  CheckLines(lines, listName);
}

void Hashing::CheckLines(const std::vector<std::string>& lines, const std::string& listName) {
  const ChecksumForm form = ChecksumFormOf(number_);
  std::size_t proper = 0;
  for (const std::string& line : lines) {
    if (line.empty() || line.starts_with('#')) continue;
    const auto expected = ReadChecksumLine(line, form);
    if (expected) {
      ++proper;
      CheckFile(*expected);
    } else {
      ++improper_;
    }
  }
  if (proper > 0) return;
  Failure failure;
  failure.text = "no properly formatted checksum line";
  failure.file = listName == "-" ? "standard input" : listName;
  failure.hint = "use -a to name the list's algorithm";
  ReportFailure(listName, failure);
}

void Hashing::CheckFile(const Checksum& expected) {
  const std::optional<std::string> digest = DigestOf(expected.name);
  const bool isSame = digest == expected.digest;
  if (!digest) {
    ++unread_;
  } else {
    results_.push_back({{"file", expected.name}, {"ok", isSame}});
    if (!isSame) ++mismatches_;
  }
  failed_ = failed_ || !isSame;
  const char* const outcome = !digest ? "FAILED open or read" : isSame ? "OK" : "FAILED";
  const bool isPrinted = !options_.status && !(isSame && report_.IsQuiet());
  if (isPrinted) report_.Text(OutcomeLine(expected.name, outcome) + "\n");
}

void Hashing::PrintSums() const {
  if (options_.status || report_.IsJson()) return;
  const auto print = [](std::size_t count, const char* one, const char* many) {
    if (count == 0) return;
    Report::Note("latchkey: WARNING: " + std::to_string(count) + " " + (count == 1 ? one : many));
  };
  print(improper_, "line is improperly formatted", "lines are improperly formatted");
  print(unread_, "listed file could not be read", "listed files could not be read");
  print(mismatches_, "computed checksum did NOT match", "computed checksums did NOT match");
}

ExitStatus RunHash(const Options& options, const Report& report) {
  Hashing hashing(options, report);
  for (const std::string& file : options.files) {
    if (options.check) {
      hashing.Check(file);
    } else {
      hashing.Print(file);
    }
  }
  return hashing.Finish();
}

}  // namespace

void AddHashCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      commandLine.Add("hash", "Print or check digests of files, as md5sum does",
                      "latchkey hash -a sha1 *.pdf >SHA1SUMS && latchkey hash -a sha1 -c SHA1SUMS",
                      [options](Report& report) { return RunHash(*options, report); });
  command.add_option("-a,--algorithm", options->algorithm, "The hash (md5)")
      ->transform(OneOfNumbered(HashNames()))
      ->type_name(Alternatives(HashNames()));
  command.add_flag("-c,--check", options->check,
                   "Read digests from the files and check them; with --quiet, print only failures");
  command.add_flag("--status", options->status,
                   "With --check, print nothing; report through the exit status");
  command.add_option("FILE", options->files, "Read these files; - is standard input (the default)")
      ->type_name("");
}

}  // namespace latchkey::cli
