// Records of every format in blocks of any size: the same values give the same bytes, other values
// do not depend on the borders of blocks, and for JSON a field is what the JSON library reads.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/json.h"
#include "cli/records/csv_format.h"
#include "cli/records/json_format.h"
#include "cli/records/lines_format.h"
#include "tests/support/record_runs.h"
#include "tests/system/fuzz/input.h"

using latchkey::cli::CommandError;
using latchkey::cli::CsvFormat;
using latchkey::cli::CsvOptions;
using latchkey::cli::FieldState;
using latchkey::cli::Json;
using latchkey::cli::JsonFormat;
using latchkey::cli::LinesFormat;
using latchkey::cli::RecordFormat;
using latchkey::cli::ScannedRecord;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;
using latchkey::test::RecordRun;
using latchkey::test::RecordRunOptions;
using latchkey::test::RunRecordsOf;
using latchkey::test::TextOf;

namespace {

constexpr const char* kField = "s";
constexpr const char* kAdded = "t";

enum class Kind : std::uint8_t { Lines, Csv, Json };

struct Choice {
  Kind kind = Kind::Lines;
  std::size_t column = 1;
  bool hasHeader = false;
  bool adds = false;
};

std::unique_ptr<RecordFormat> Make(const Choice& choice) {
  const std::optional<std::string> added =
      choice.adds ? std::optional<std::string>(kAdded) : std::nullopt;
  if (choice.kind == Kind::Lines) return std::make_unique<LinesFormat>();
  if (choice.kind == Kind::Json) return std::make_unique<JsonFormat>(kField, added);
  return std::make_unique<CsvFormat>(CsvOptions{{}, choice.column, choice.hasHeader, ',', added});
}

// The output, or the text of the failure that ended it.
RecordRun Run(const Choice& choice, std::string_view text, const RecordRunOptions& options) {
  const auto format = Make(choice);
  try {
    return RunRecordsOf(*format, text, options);
  } catch (const CommandError& error) {
    RecordRun run;
    run.failures.emplace_back(0, error.Get().text);
    return run;
  }
}

void RequireSameInBlocks(const Choice& choice, std::string_view text, std::size_t blockSize,
                         bool reverses) {
  const RecordRun whole = Run(choice, text, {.reverses = reverses});
  const RecordRun blocks = Run(choice, text, {blockSize, 2, reverses});
  Require(whole.output == blocks.output && whole.failures == blocks.failures);
  const bool ended = !whole.failures.empty() && whole.failures.front().first == 0;
  // CSV gets quotes around what COPY would take for the end of the data.
  const bool hasEndMark = text.find("\\.") != std::string_view::npos;
  if (!reverses && !choice.adds && choice.kind != Kind::Json && !ended && !hasEndMark) {
    Require(whole.output == text);
  }
}

// Records follow each other without a gap, and their fields are inside.
void RequireRanges(const Choice& choice, std::string_view text) {
  std::vector<ScannedRecord> records;
  Make(choice)->Scan(latchkey::test::BytesOf(text), records);
  std::uint32_t at = 0;
  for (const ScannedRecord& record : records) {
    Require(record.all.begin == at && record.all.end > at);
    at = record.all.end;
    Require(record.target.begin >= record.all.begin && record.target.end <= at &&
            record.target.begin <= record.target.end);
    if (record.state != FieldState::Value) continue;
    Require(record.source.begin >= record.all.begin && record.source.end <= at &&
            record.source.begin <= record.source.end);
  }
  Require(at == text.size());
}

void RequireJsonField(std::string_view line) {
  const Json object = Json::parse(line, nullptr, false);
  if (!object.is_object()) return;
  const JsonFormat format(kField, std::nullopt);
  std::vector<ScannedRecord> records;
  format.Scan(latchkey::test::BytesOf(line), records);
  Require(records.size() == 1);
  const ScannedRecord& record = records.front();
  const auto found = object.find(kField);
  const bool isText = found != object.end() && found->is_string();
  const bool isNothing = found == object.end() || found->is_null();
  Require(record.state == (isText      ? FieldState::Value
                           : isNothing ? FieldState::Nothing
                                       : FieldState::Bad));
  if (!isText) return;
  latchkey::WipedBytes value;
  Require(format.Unescape(record.source.Of(latchkey::test::BytesOf(line)), value));
  Require(TextOf(value) == found->get<std::string>());
  latchkey::WipedBytes written;
  Require(format.Write(value, record, written));
  Require(Json::parse(written) == *found);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const auto form = input.Take<std::uint8_t>();
  const Choice choice{static_cast<Kind>(form % 3), form / 3 % 4U + 1, (form & 0x40U) != 0,
                      (form & 0x80U) != 0};
  const std::size_t blockSize = input.Take<std::uint8_t>() % 64U + 1;
  const auto rest = input.TakeRest();
  const std::string text(rest.begin(), rest.end());
  for (const bool reverses : {false, true}) {
    RequireSameInBlocks(choice, text, blockSize, reverses);
  }
  RequireRanges(choice, text);
  if (choice.kind == Kind::Json) RequireJsonField(text.substr(0, text.find('\n')));
  return 0;
}
