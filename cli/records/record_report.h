// Reports of the records that failed or were completed.
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "cli/records/block_transform.h"
#include "cli/report.h"

namespace latchkey::cli {

// Writes a line for each record that failed or was completed: to the file as JSON Lines or, without
// a file, to standard error, with --json also as JSON Lines. The lines contain nothing of the
// records' data.
class RecordReport {
 public:
  // Opens the file. Raises CommandError if it cannot be opened, or exists without `force`.
  RecordReport(const Report& report, std::string input, std::optional<std::string> file,
               bool force);

  // Adds the noted records of a block. Raises CommandError if the file cannot be written, and with
  // the failure of a record that ends the work. That record has a line in the file, but none on
  // standard error.
  void Add(const BlockResult& result);

  // Writes the sums to standard error, and closes the file.
  void Finish(const RecordCounts& counts);

 private:
  [[noreturn]] void Stop(const NotedRecord& noted);
  [[nodiscard]] std::string Place(const NotedRecord& noted) const;
  [[nodiscard]] std::string LineOf(const NotedRecord& noted) const;
  void Write(const std::string& lines);

  const Report& report_;
  std::string input_;
  std::optional<std::string> name_;
  std::ofstream file_;
  std::string hint_;  // the hint of the first failure
};

}  // namespace latchkey::cli
