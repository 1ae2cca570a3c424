#include "cli/records/record_report.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/json.h"
#include "cli/name_parts.h"
#include "cli/platform/terminal.h"

namespace latchkey::cli {
namespace {

CommandError CannotWrite(const std::string& file, std::string hint = {}) {
  return CommandError(
      Failure{.text = "cannot write the report", .file = file, .hint = std::move(hint)});
}

std::string BytesMissing(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes") + " missing at the end";
}

std::string JsonLineOf(const NotedRecord& noted) {
  Json line{{"line", noted.line}, {"outcome", noted.failed ? "failed" : "completed"}};
  if (noted.failed) line.update(Report::ErrorObject(noted.failure));
  line.erase("hint");
  if (noted.missingBytes != 0) line["missing_bytes"] = noted.missingBytes;
  return line.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace

RecordReport::RecordReport(const Report& report, std::string input, std::optional<std::string> file,
                           bool force)
    : report_(report), input_(std::move(input)), name_(std::move(file)) {
  if (!name_) return;
  const std::filesystem::path path = PathOf(*name_);
  std::error_code ignored;
  if (!force && std::filesystem::is_regular_file(path, ignored)) {
    throw CannotWrite(*name_, "it exists: use --force to replace it");
  }
  file_.open(path, std::ios::binary);
  if (!file_) throw CannotWrite(*name_);
}

std::string RecordReport::Place(const NotedRecord& noted) const {
  return input_ + ", line " + std::to_string(noted.line);
}

std::string RecordReport::LineOf(const NotedRecord& noted) const {
  Failure failure = noted.failure;
  failure.file = Place(noted);
  if (!noted.failed) {
    failure.text = "warning: " + BytesMissing(noted.missingBytes) + ", decrypted with spaces there";
  } else if (noted.missingBytes != 0) {
    failure.file += ", " + BytesMissing(noted.missingBytes);
  }
  return FailureLine(failure) + "\n";
}

void RecordReport::Write(const std::string& lines) {
  if (!name_) {
    WriteText(StandardStream::Error, lines);
    return;
  }
  file_ << lines;
  if (!file_) throw CannotWrite(*name_);
}

void RecordReport::Add(const BlockResult& result) {
  const std::span noted(result.noted);
  std::string lines;
  for (const NotedRecord& each : noted.first(noted.size() - (result.isStopped ? 1 : 0))) {
    lines += name_ || report_.IsJson() ? JsonLineOf(each) : LineOf(each);
    if (hint_.empty()) hint_ = each.failure.hint;
  }
  if (!lines.empty()) Write(lines);
  if (result.isStopped) Stop(noted.back());
}

void RecordReport::Stop(const NotedRecord& noted) {
  if (name_) Write(JsonLineOf(noted));
  file_.close();
  Failure failure = noted.failure;
  failure.file = Place(noted);
  if (noted.missingBytes != 0) failure.hint = BytesMissing(noted.missingBytes);
  throw CommandError(std::move(failure));
}

void RecordReport::Finish(const RecordCounts& counts) {
  if (name_) {
    file_.close();
    if (!file_) throw CannotWrite(*name_);
  }
  if (report_.IsJson()) return;
  std::string sums;
  const auto add = [&](std::uint64_t count, const char* what) {
    if (count == 0) return;
    sums += "latchkey: " + std::to_string(count) + " of " + std::to_string(counts.records) + what;
  };
  add(counts.failed, " records failed\n");
  if (!hint_.empty() && !report_.IsQuiet()) sums += "hint: " + hint_ + "\n";
  add(counts.completed, " records were cut at the end and decrypted with spaces there\n");
  if (!sums.empty()) WriteText(StandardStream::Error, sums);
}

}  // namespace latchkey::cli
