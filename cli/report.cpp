#include "cli/report.h"

#include <nlohmann/json.hpp>

#include "cli/json.h"
#include "cli/platform/terminal.h"

namespace latchkey::cli {

namespace {

// JSON must be UTF-8, which file names need not be. Escapes characters beyond ASCII, since
// terminals obey some of them.
std::string TextOf(const Json& json) {
  return json.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

void WriteOutput(std::string_view text) {
  if (WriteText(StandardStream::Output, text)) return;
  throw CommandError(Failure{.text = "cannot write", .file = "standard output"});
}

}  // namespace

void Report::Result(const Json& result) const {
  if (!options_.json) return;
  if (outputIsData_) {
    WriteText(StandardStream::Error, TextOf(result));
    return;
  }
  ResultPart(TextOf(result));
}

void Report::ResultPart(std::string_view text) const {
  if (!options_.json) return;
  resultBegun_ = true;
  WriteOutput(text);
}

void Report::Text(std::string_view text) const {
  if (!options_.json) WriteOutput(text);
}

void Report::Note(std::string_view line) {
  WriteText(StandardStream::Error, std::string(line) + "\n");
}

void Report::Fail(const Failure& failure) const {
  if (options_.json && !resultBegun_) {
    const auto stream = outputIsData_ ? StandardStream::Error : StandardStream::Output;
    if (WriteText(stream, TextOf({{"error", ErrorObject(failure)}}))) return;
  }
  std::string lines = FailureLine(failure);
  if (!failure.hint.empty() && !options_.quiet) lines += "\nhint: " + failure.hint;
  Note(lines);  // in one call, so that lack of memory cannot cut it short
}

Json Report::ErrorObject(const Failure& failure) {
  Json error{{"text", failure.text}};
  if (failure.type != 0) error["type"] = failure.type;
  if (failure.location != 0) error["location"] = failure.location;
  if (failure.number != 0) error["number"] = failure.number;
  if (!failure.file.empty()) error["file"] = failure.file;
  if (!failure.hint.empty()) error["hint"] = failure.hint;
  return error;
}

}  // namespace latchkey::cli
