// How a command tells its results and failures: as text for people or as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "cli/failure.h"

namespace latchkey::cli {

struct ReportOptions {
  bool json = false;
  bool quiet = false;
};

// With --json the results are one JSON object on standard output, or on standard error where the
// data itself goes to standard output; a failure is the object {"error": ...} in the same place,
// or a line on standard error when writing a result there had begun.
// Without, results are lines on standard output and failures lines on standard error.
class Report {
 public:
  explicit Report(const ReportOptions& options) noexcept : options_(options) {}

  [[nodiscard]] bool IsJson() const noexcept { return options_.json; }
  [[nodiscard]] bool IsQuiet() const noexcept { return options_.quiet; }

  // From now on standard output belongs to the data.
  void GiveOutputToData() noexcept { outputIsData_ = true; }

  // Writes a result. Without --json nothing: the command has its own lines.
  void Result(const nlohmann::ordered_json& result) const;

  // Writes text to standard output as it is, unless --json stands. Raises CommandError when it
  // cannot be written.
  void Text(std::string_view text) const;

  // A line on standard error, whatever stands.
  static void Note(std::string_view line);

  // Tells of a failure: its JSON object or, without --json, where that cannot be written and after
  // a result, its line.
  void Fail(const Failure& failure) const;

  // The failure's members, for a result that has failures among it.
  [[nodiscard]] static nlohmann::ordered_json ErrorObject(const Failure& failure);

 private:
  const ReportOptions& options_;
  bool outputIsData_ = false;
  mutable bool resultBegun_ = false;  // on standard output
};

}  // namespace latchkey::cli
