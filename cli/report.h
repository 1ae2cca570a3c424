// Results and failures of a command, as text for people or as JSON.
#pragma once

#include <string_view>

#include "cli/failure.h"
#include "cli/json.h"

namespace latchkey::cli {

struct ReportOptions {
  bool json = false;
  bool quiet = false;
};

// With --json, the results are one JSON object on standard output, or on standard error if the data
// is written to standard output. A failure is the object {"error": ...} in the same place, or a
// line on standard error if a result was already begun there. Without --json, results are lines on
// standard output and failures lines on standard error.
class Report {
 public:
  explicit Report(const ReportOptions& options) noexcept : options_(options) {}

  [[nodiscard]] bool IsJson() const noexcept { return options_.json; }
  [[nodiscard]] bool IsQuiet() const noexcept { return options_.quiet; }

  // Reserves standard output for the data from now on.
  void GiveOutputToData() noexcept { outputIsData_ = true; }

  // Writes a result with --json. Otherwise does nothing: the command prints its own lines.
  void Result(const Json& result) const;

  // With --json, writes the next part of a result that the command writes itself, unchanged. The
  // parts together are one JSON object with a line end.
  void ResultPart(std::string_view text) const;

  // Writes text to standard output unchanged, unless --json is set. Raises CommandError if it
  // cannot be written.
  void Text(std::string_view text) const;

  // Writes a line on standard error, with any options.
  static void Note(std::string_view line);

  // Reports a failure as a JSON object. Without --json, after a result, and if the object cannot be
  // written, reports it as a line.
  void Fail(const Failure& failure) const;

  // The failure as a JSON object, for a result that includes failures.
  [[nodiscard]] static Json ErrorObject(const Failure& failure);

 private:
  const ReportOptions& options_;
  bool outputIsData_ = false;
  mutable bool resultBegun_ = false;  // on standard output
};

}  // namespace latchkey::cli
