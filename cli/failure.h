// A failure as the command reports it.
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

// The exit status of the process.
enum class ExitStatus { Done = 0, Failed = 1, WrongUsage = 2, Guessed = 3 };

// An error record, and the file that it is about. A failure of the component has a location; a
// failure of the operating system or of the command itself has only a text.
struct Failure {
  // NOLINTBEGIN(readability-redundant-member-init): without a value GCC warns of initializers that
  // leave the member out
  std::string text{};
  std::string file{};  // empty if no file is concerned
  std::string hint{};  // what to try; may be empty
  // NOLINTEND(readability-redundant-member-init)
  std::int32_t type = 0;
  std::int32_t location = 0;
  std::int32_t number = 0;
  ExitStatus status = ExitStatus::Failed;
};

// Carries a failure to CommandLine, which reports it. Thrown by commands.
class CommandError final : public std::exception {
 public:
  explicit CommandError(Failure failure) : failure_(std::move(failure)) {}

  [[nodiscard]] const Failure& Get() const noexcept { return failure_; }
  [[nodiscard]] const char* what() const noexcept override { return failure_.text.c_str(); }

 private:
  Failure failure_;
};

// The failure of a check, with the text and numbers of the failure table.
[[nodiscard]] Failure FailureAt(const CheckSite& site, std::string file = {});

// Advice for the check or trap with this location number; empty if no advice is known.
[[nodiscard]] std::string_view HintFor(std::int32_t location) noexcept;

// Returns the failure. If it says that decryption failed, its hint begins with `hint`.
[[nodiscard]] Failure WithDecryptionHint(Failure failure, const std::string& hint);

// The failure in the thread's error record. Requires ErrorExists.
[[nodiscard]] Failure RecordedFailure();

// The failure that an exception reports.
[[nodiscard]] Failure FailureOf(const FileError& error);
[[nodiscard]] Failure FailureOf(const Fault& fault);

// The error for conflicting, unknown or missing options.
[[nodiscard]] CommandError WrongUsage(std::string text, std::string hint = {});

// The line "latchkey: Error decrypting data (location 717, number 120): FILE", without a line end.
[[nodiscard]] std::string FailureLine(const Failure& failure);

// Converts a text of the failure table or the error record to UTF-8.
[[nodiscard]] std::string Utf8(TextView text);

}  // namespace latchkey::cli
