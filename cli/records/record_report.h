// Reports of the records that failed or were completed.
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "cli/records/block_transform.h"
#include "cli/report.h"

namespace latchkey::cli {

struct RecordReportOptions {
  std::optional<std::string> file;
  bool force = false;  // replaces an existing file
};

// Writes a line for each record: to the file as JSON Lines or, without one, to standard error, with
// --json as JSON Lines too. The lines contain nothing of the records' data.
class RecordReport {
 public:
  // Opens the file. Raises CommandError if it cannot be opened, or exists and may not be replaced.
  RecordReport(const Report& report, std::string input, const RecordReportOptions& options);

  // Raises CommandError if the file cannot be written.
  void Add(const std::vector<NotedRecord>& noted);

  // The failure of a record that ends the work. It is in the file, but not on standard error.
  [[noreturn]] void Stop(const NotedRecord& noted);

  // Writes the sums to standard error, and closes the file.
  void Finish(const RecordCounts& counts);

 private:
  [[nodiscard]] std::string Place(const NotedRecord& noted) const;
  [[nodiscard]] std::string LineOf(const NotedRecord& noted) const;
  void Write(const std::string& lines);

  const Report& report_;
  std::string input_;
  std::optional<std::string> name_;
  std::ofstream file_;
  std::string hint_;  // of the first failure
};

}  // namespace latchkey::cli
