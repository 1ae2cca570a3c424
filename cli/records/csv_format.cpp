#include "cli/records/csv_format.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/failure.h"

namespace latchkey::cli {
namespace {

constexpr std::uint8_t kQuote = '"';

ByteSpan BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// Whether each quote is doubled.
bool AreQuotesDoubled(ByteSpan text) {
  for (std::size_t at = Find(text, kQuote); at < text.size(); at = Find(text, kQuote, at + 2)) {
    if (at + 1 == text.size() || text[at + 1] != kQuote) return false;
  }
  return true;
}

// Sets state of a field without quotes. As COPY does, refuses what other readers take for a line
// end.
void ReadPlain(ByteSpan block, ScannedRecord& record) {
  const ByteSpan field = record.target.Of(block);
  if (field.empty()) return;
  record.state = FieldState::Value;
  if (Find(field, '\r') == field.size()) return;
  record.state = FieldState::Bad;
  record.fault = "a carriage return in the field, which is not in quotes";
}

// Sets source and state of a field with quotes.
void ReadQuoted(ByteSpan block, ScannedRecord& record) {
  const ByteSpan field = record.target.Of(block);
  const bool isQuoted = field.size() >= 2 && field.front() == kQuote && field.back() == kQuote;
  const ByteSpan inside = isQuoted ? field.subspan(1, field.size() - 2) : ByteSpan();
  record.isQuoted = isQuoted;
  if (isQuoted && AreQuotesDoubled(inside)) {
    record.state = FieldState::Value;
    record.source = {record.target.begin + 1, record.target.end - 1};
    record.isEscaped = Find(inside, kQuote) < inside.size();
  } else {
    record.state = FieldState::Bad;
    record.fault = "a quote in the field is not doubled, or the field is not in quotes";
  }
}

// Does not show the header: in a file without one, the first line is a record.
CommandError NoSuchColumn(const std::string& name) {
  return CommandError(
      Failure{.text = "the header has no column " + name,
              .hint = "--column also takes a number; --no-header is for files without a header"});
}

CommandError WrongHeader(std::string text) {
  return CommandError(Failure{.text = std::move(text)});
}

}  // namespace

CsvFormat::CsvFormat(CsvOptions options) : options_(std::move(options)) {}

// A record ends at a line end that an even number of quotes precedes.
std::size_t CsvFormat::LengthOfWhole(ByteSpan bytes) const noexcept {
  auto isQuoted = std::count(bytes.begin(), bytes.end(), kQuote) % 2 != 0;
  for (std::size_t length = bytes.size(); length > 0; --length) {
    const std::uint8_t last = bytes[length - 1];
    if (last == '\n' && !isQuoted) return length;
    if (last == kQuote) isQuoted = !isQuoted;
  }
  return 0;
}

CsvFormat::Field CsvFormat::ScanField(ByteSpan bytes, std::size_t begin) const noexcept {
  Field field{begin};
  for (; field.end < bytes.size(); ++field.end) {
    const std::uint8_t byte = bytes[field.end];
    if (byte == kQuote) {
      ++field.quotes;
    } else if (byte == '\n') {
      if (!field.IsOpen()) break;
      ++field.lines;
    } else if (byte == options_.delimiter && !field.IsOpen()) {
      break;
    }
  }
  return field;
}

std::uint32_t CsvFormat::ScanRecord(ByteSpan block, std::size_t begin,
                                    ScannedRecord& record) const noexcept {
  std::uint32_t lines = 1;
  std::size_t number = 0;
  std::size_t at = begin;
  Field field;
  for (;; ++at) {
    field = ScanField(block, at);
    lines += field.lines;
    const bool isLast = field.end == block.size() || block[field.end] == '\n';
    const bool hasReturn = isLast && field.end > at && block[field.end - 1] == '\r';
    const std::size_t end = field.end - (hasReturn ? 1 : 0);
    if (++number == options_.columnNumber) {
      record.source = record.target = RangeOf(at, end);
      field.quotes > 0 ? ReadQuoted(block, record) : ReadPlain(block, record);
    }
    at = field.end;
    if (!isLast) continue;
    record.all = RangeOf(begin, std::min(field.end + 1, block.size()));
    record.isAdded = options_.addedName && end > begin;
    if (record.isAdded || number < options_.columnNumber) record.target = RangeOf(end, end);
    break;
  }
  if (field.IsOpen()) {
    record.state = FieldState::Bad;
    record.fault = "a quoted field is not closed";
  }
  return lines;
}

void CsvFormat::Scan(ByteSpan block, std::vector<ScannedRecord>& records) const {
  std::uint32_t line = 0;
  for (std::size_t begin = 0; begin < block.size(); begin = records.back().all.end) {
    ScannedRecord& record = records.emplace_back();
    record.line = line;
    line += ScanRecord(block, begin, record);
  }
}

bool CsvFormat::Unescape(ByteSpan source, WipedBytes& text) const {
  for (std::size_t begin = 0; begin < source.size();) {
    const std::size_t quote = Find(source, kQuote, begin);
    const std::size_t end = std::min(quote + 1, source.size());
    Append(source.subspan(begin, end - begin), text);
    begin = end + (quote < source.size() ? 1 : 0);
  }
  return true;
}

std::vector<std::string> CsvFormat::FieldsOf(ByteSpan record) const {
  std::vector<std::string> fields;
  for (std::size_t at = 0; at <= record.size();) {
    const std::size_t end = ScanField(record, at).end;
    ByteSpan field = record.subspan(at, end - at);
    WipedBytes text;
    if (field.size() >= 2 && field.front() == kQuote && field.back() == kQuote) {
      static_cast<void>(Unescape(field.subspan(1, field.size() - 2), text));
      field = text;
    }
    fields.emplace_back(field.begin(), field.end());
    at = end + 1;
  }
  return fields;
}

void CsvFormat::ChooseColumn(const std::vector<std::string>& names) {
  if (options_.addedName && std::ranges::count(names, *options_.addedName) > 0) {
    throw WrongHeader("the header already has the column " + *options_.addedName);
  }
  if (options_.columnNumber != 0) {
    if (options_.columnNumber <= names.size()) return;
    throw WrongHeader("the header has only " + std::to_string(names.size()) + " columns");
  }
  const auto found = std::ranges::find(names, options_.columnName);
  if (found == names.end()) throw NoSuchColumn(options_.columnName);
  if (std::ranges::count(names, options_.columnName) > 1) {
    throw WrongHeader("several columns are named " + options_.columnName + ": use a number");
  }
  options_.columnNumber = static_cast<std::size_t>(found - names.begin()) + 1;
}

std::size_t CsvFormat::ReadHeader(ByteSpan bytes, WipedBytes& output) {
  if (!options_.hasHeader || bytes.empty()) return 0;
  std::size_t end = 0;
  Field last;
  for (std::size_t at = 0; at <= bytes.size() && (at == 0 || bytes[at - 1] != '\n'); at = end + 1) {
    last = ScanField(bytes, at);
    end = last.end;
  }
  if (last.IsOpen()) throw WrongHeader("a quoted field of the header is not closed");
  const bool hasReturn = end > 0 && bytes[end - 1] == '\r';
  const std::size_t text = end - (hasReturn ? 1 : 0);
  ChooseColumn(FieldsOf(bytes.first(text)));
  const std::size_t length = std::min(end + 1, bytes.size());
  Append(bytes.first(text), output);
  if (options_.addedName) {
    output.push_back(options_.delimiter);
    AppendField(BytesOf(*options_.addedName), false, output);
  }
  Append(bytes.subspan(text, length - text), output);
  return length;
}

// COPY reads a line of \. alone as the end of the data.
bool CsvFormat::NeedsQuotes(ByteSpan value) const noexcept {
  const auto isSpecial = [this](std::uint8_t byte) {
    return byte == kQuote || byte == options_.delimiter || byte == '\n' || byte == '\r';
  };
  return value.empty() || std::ranges::any_of(value, isSpecial) ||
         std::ranges::equal(value, BytesOf("\\."));
}

void CsvFormat::AppendField(ByteSpan value, bool quoted, WipedBytes& output) const {
  if (!quoted && !NeedsQuotes(value)) return Append(value, output);
  output.push_back(kQuote);
  for (std::size_t begin = 0; begin < value.size();) {
    const std::size_t quote = Find(value, kQuote, begin);
    const std::size_t end = std::min(quote + 1, value.size());
    Append(value.subspan(begin, end - begin), output);
    if (quote < value.size()) output.push_back(kQuote);
    begin = end;
  }
  output.push_back(kQuote);
}

bool CsvFormat::Write(ByteSpan value, const ScannedRecord& record, WipedBytes& output) const {
  if (record.isAdded) output.push_back(options_.delimiter);
  AppendField(value, record.isQuoted && !record.isAdded, output);
  return true;
}

void CsvFormat::WriteNothing(const ScannedRecord& record, WipedBytes& output) const {
  if (record.isAdded) output.push_back(options_.delimiter);
}

}  // namespace latchkey::cli
