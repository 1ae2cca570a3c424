// The results of a run with many files.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "cli/cipher_stream.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/json.h"
#include "cli/progress.h"
#include "cli/report.h"

namespace latchkey::cli {

// Reports each file when it is finished: with --json as an element of one object, which is written
// piece by piece, otherwise only failures. Members may be called by any thread, except Finish.
class FileResults {
 public:
  FileResults(const Report& report, const FilePlan& plan)
      : report_(report), plan_(plan), progress_(plan.Bytes(), report.IsQuiet()) {}

  // Adds a file whose output has its name.
  void AddDone(const PlannedFile& file, const ByteCounts& counts);
  void AddSkipped(const PlannedFile& file);
  void AddFailed(const PlannedFile& file, const Failure& failure);
  // Adds a failure that concerns no single file.
  void AddFailed(const Failure& failure);

  // Shows progress: this number of bytes was read.
  void Advance(std::uint64_t bytes);

  // Reports the sums. Adds the members of `settings` to the JSON object. Returns the exit status.
  ExitStatus Finish(const char* verb, const Json& settings);

 private:
  void AddElement(const Json& element);
  void ReportFailure(Json element, Failure failure);
  [[nodiscard]] std::string Summary(const char* verb) const;

  const Report& report_;
  const FilePlan& plan_;
  std::mutex mutex_;
  Progress progress_;
  bool hasElements_ = false;
  std::string lastHint_;
  std::uint64_t done_ = 0;
  std::uint64_t skipped_ = 0;
  std::uint64_t failed_ = 0;
  bool hasOtherFailure_ = false;
  ByteCounts counts_;
};

}  // namespace latchkey::cli
