#include "cli/failure.h"

#include "cli/visible_text.h"
#include "diagnostics/thread_state.h"

namespace latchkey::cli {

Failure FailureAt(const CheckSite& site, std::string file) {
  return {Utf8(site.text),     std::move(file), std::string(HintFor(site.location)),
          kApplicationFailure, site.location,   site.number,
          ExitStatus::Failed};
}

Failure RecordedFailure() {
  const clsErrorObject& record = ErrorRecord();
  const bool isFault = record.ErrorType() == kRunTimeFailure;
  return {.text = Utf8(isFault ? record.RTErrorDescription() : record.AppErrorDescription()),
          .hint = std::string(HintFor(record.ErrorLocationID())),
          .type = record.ErrorType(),
          .location = record.ErrorLocationID(),
          .number = isFault ? record.RTErrorNumber() : record.AppErrorNumber()};
}

Failure FailureOf(const FileError& error) {
  Failure failure{.text = error.what(), .file = error.Name()};
  if (error.code() == std::errc::file_exists) {
    failure.hint = "use --force to replace a file, or to write to a device or pipe";
  }
  return failure;
}

Failure FailureOf(const Fault& fault) {
  return {.text = Utf8(fault.Description()), .type = kRunTimeFailure, .number = fault.Number()};
}

CommandError WrongUsage(std::string text, std::string hint) {
  return CommandError(
      Failure{.text = std::move(text), .hint = std::move(hint), .status = ExitStatus::WrongUsage});
}

std::string FailureLine(const Failure& failure) {
  std::string line = "latchkey: " + failure.text;
  if (failure.location != 0) {
    line += " (location " + std::to_string(failure.location) + ", number " +
            std::to_string(failure.number) + ")";
  } else if (failure.number != 0) {
    line += " (number " + std::to_string(failure.number) + ")";
  }
  return WithoutControls(failure.file.empty() ? line : line + ": " + failure.file);
}

Failure WithDecryptionHint(Failure failure, const std::string& hint) {
  if (!hint.empty() && failure.location == check::kDecryptCipher.location) {
    failure.hint = hint + "; " + failure.hint;
  }
  return failure;
}

// The texts are ASCII.
std::string Utf8(TextView text) {
  std::string utf8;
  for (const char16_t character : text) utf8 += static_cast<char>(character);
  return utf8;
}

}  // namespace latchkey::cli
