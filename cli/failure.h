// A failure as the command tells of it.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "cli/platform/file_error.h"
#include "diagnostics/failure_table.h"
#include "latchkey/fault.h"

namespace latchkey::cli {

// What the process ends with.
enum class ExitStatus { Done = 0, Failed = 1, WrongUsage = 2 };

// The error record and what it is about. A failure of the component has a location; one of the
// operating system or of the command's own has none and says everything in its text.
struct Failure {
  std::string text;
  std::string file;  // empty when it is about no file
  std::string hint;  // what to try; empty when there is nothing to say
  std::int32_t type = 0;
  std::int32_t location = 0;
  std::int32_t number = 0;
  ExitStatus status = ExitStatus::Failed;
};

// Carries a failure to where it is told. Thrown by commands, caught in one place.
class CommandError final : public std::exception {
 public:
  explicit CommandError(Failure failure) : failure_(std::move(failure)) {}

  [[nodiscard]] const Failure& Get() const noexcept { return failure_; }
  [[nodiscard]] const char* what() const noexcept override { return failure_.text.c_str(); }

 private:
  Failure failure_;
};

// The failure of a check, with the table's text and numbers.
[[nodiscard]] Failure FailureAt(const CheckSite& site, std::string file = {});

// What the thread's error record holds. Call it when ErrorExists.
[[nodiscard]] Failure RecordedFailure();

[[nodiscard]] Failure FailureOf(const FileError& error);
[[nodiscard]] Failure FailureOf(const Fault& fault);

// Options that do not go together, or that are not there.
[[nodiscard]] CommandError WrongUsage(std::string text, std::string hint = {});

// "latchkey: Error decrypting data (location 717, number 120): FILE", without a line end.
[[nodiscard]] std::string FailureLine(const Failure& failure);

// The table's and the record's texts as UTF-8.
[[nodiscard]] std::string Utf8(TextView text);

}  // namespace latchkey::cli
