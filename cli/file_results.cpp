#include "cli/file_results.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace latchkey::cli {
namespace {

constexpr const char* kStart = "{\n  \"results\": [";

std::string TextOf(const Json& json) {
  return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string Number(std::uint64_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

void FileResults::AddDone(const PlannedFile& file, const ByteCounts& counts) {
  const std::lock_guard lock(mutex_);
  ++done_;
  counts_.in += counts.in;
  counts_.out += counts.out;
  if (!report_.IsJson()) return;
  AddElement({{"input", file.input},
              {"output", file.output},
              {"bytes_in", counts.in},
              {"bytes_out", counts.out}});
}

void FileResults::AddSkipped(const PlannedFile& file) {
  const std::lock_guard lock(mutex_);
  ++skipped_;
  if (!report_.IsJson()) return;
  AddElement({{"input", file.input}, {"output", file.output}, {"skipped", true}});
}

void FileResults::AddFailed(const PlannedFile& file, const Failure& failure) {
  const std::lock_guard lock(mutex_);
  ++failed_;
  ReportFailure({{"input", file.input}}, failure);
}

void FileResults::AddFailed(const Failure& failure) {
  const std::lock_guard lock(mutex_);
  hasOtherFailure_ = true;
  ReportFailure(Json::object(), failure);
}

// Adds the error to the element or, without --json, prints it. A hint that many files share is
// printed once.
void FileResults::ReportFailure(Json element, Failure failure) {
  if (report_.IsJson()) {
    element["error"] = Report::ErrorObject(failure);
    AddElement(element);
    return;
  }
  if (failure.hint == lastHint_) {
    failure.hint.clear();
  } else if (!failure.hint.empty()) {
    lastHint_ = failure.hint;
  }
  progress_.Hide();
  report_.Fail(failure);
}

void FileResults::Advance(std::uint64_t bytes) {
  const std::lock_guard lock(mutex_);
  progress_.Advance(bytes);
}

void FileResults::AddElement(const Json& element) {
  std::string text = std::exchange(hasElements_, true) ? "," : kStart;
  report_.ResultPart(text += "\n    " + TextOf(element));
}

ExitStatus FileResults::Finish(const char* verb, const Json& settings) {
  progress_.Hide();
  if (report_.IsJson()) {
    Json sums = settings;
    sums["done"] = done_;
    sums["skipped"] = skipped_;
    sums["failed"] = failed_;
    sums["left_out"] = plan_.LeftOut();
    sums["bytes_in"] = counts_.in;
    sums["bytes_out"] = counts_.out;
    const std::string members = TextOf(sums).substr(1);
    report_.ResultPart((hasElements_ ? "\n  ],\n  " : std::string(kStart) + "],\n  ") + members +
                       "\n");
  } else if (!report_.IsQuiet()) {
    report_.Text(Summary(verb));
  }
  return failed_ > 0 || hasOtherFailure_ ? ExitStatus::Failed : ExitStatus::Done;
}

std::string FileResults::Summary(const char* verb) const {
  std::string text = Number(done_, "file") + " " + verb + " (" + Number(counts_.in, "byte") + ")";
  if (skipped_ > 0) text += ", " + std::to_string(skipped_) + " skipped (output exists)";
  if (failed_ > 0) text += ", " + std::to_string(failed_) + " failed";
  if (plan_.LeftOut() > 0) text += ", " + std::to_string(plan_.LeftOut()) + " left out";
  return text + "\n";
}

}  // namespace latchkey::cli
