#include "cli/records/json_format.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/records/json_string.h"

namespace latchkey::cli {
namespace {

constexpr const char* kNoObject = "the line is not a JSON object";

bool IsSpace(std::uint8_t byte) { return byte == ' ' || byte == '\t' || byte == '\r'; }

// Steps through the members of an object. Every step returns false for text that is not JSON.
class Members {
 public:
  explicit Members(ByteSpan line) noexcept : line_(line) {}

  [[nodiscard]] bool Begin() {
    SkipSpaces();
    return Take('{');
  }

  // Whether another member follows; its name, without the quotes, and its value.
  [[nodiscard]] bool Next(bool& hasMember, BlockRange& name, BlockRange& value) {
    SkipSpaces();
    hasMember = !Take('}');
    if (!hasMember) return IsAtEnd();
    if (count_++ > 0 && !Take(',')) return false;
    SkipSpaces();
    const std::size_t begin = at_ + 1;
    if (!SkipString()) return false;
    name = RangeOf(begin, at_ - 1);
    SkipSpaces();
    if (!Take(':')) return false;
    SkipSpaces();
    const std::size_t from = at_;
    if (!SkipValue()) return false;
    value = RangeOf(from, at_);
    return true;
  }

 private:
  void SkipSpaces() {
    while (at_ < line_.size() && IsSpace(line_[at_])) ++at_;
  }

  [[nodiscard]] bool Take(std::uint8_t byte) {
    const bool isThere = at_ < line_.size() && line_[at_] == byte;
    if (isThere) ++at_;
    return isThere;
  }

  [[nodiscard]] bool IsAtEnd() {
    SkipSpaces();
    return at_ == line_.size();
  }

  [[nodiscard]] bool SkipString() {
    if (!Take('"')) return false;
    for (; at_ < line_.size(); ++at_) {
      if (line_[at_] == '"') {
        ++at_;
        return true;
      }
      if (line_[at_] == '\\') ++at_;
    }
    at_ = line_.size();
    return false;
  }

  [[nodiscard]] bool SkipValue() {
    if (at_ == line_.size()) return false;
    if (line_[at_] == '"') return SkipString();
    return line_[at_] == '{' || line_[at_] == '[' ? SkipNested() : SkipWord();
  }

  [[nodiscard]] bool SkipNested() {
    std::size_t depth = 0;
    while (at_ < line_.size()) {
      const std::uint8_t byte = line_[at_];
      if (byte == '"') {
        if (!SkipString()) return false;
        continue;
      }
      ++at_;
      if (byte == '{' || byte == '[') ++depth;
      if ((byte == '}' || byte == ']') && --depth == 0) return true;
    }
    return false;
  }

  // A number, true, false or null.
  [[nodiscard]] bool SkipWord() {
    const std::size_t begin = at_;
    const auto isInside = [](std::uint8_t byte) {
      return !IsSpace(byte) && std::string_view(",:\"{}[]").find(static_cast<char>(byte)) ==
                                   std::string_view::npos;
    };
    while (at_ < line_.size() && isInside(line_[at_])) ++at_;
    return at_ > begin;
  }

  ByteSpan line_;
  std::size_t at_ = 0;
  std::size_t count_ = 0;
};

bool IsText(ByteSpan bytes, std::string_view text) {
  return std::ranges::equal(bytes, text, {}, {}, [](char c) { return static_cast<std::uint8_t>(c); });
}

bool IsName(ByteSpan escaped, std::string_view name) {
  if (Find(escaped, '\\') == escaped.size()) return IsText(escaped, name);
  WipedBytes plain;
  return UnescapeJson(escaped, plain) && IsText(plain, name);
}

void SetBad(ScannedRecord& record, const char* fault) {
  record.state = FieldState::Bad;
  record.fault = fault;
}

// Sets state and source.
void ReadValue(ByteSpan line, BlockRange value, ScannedRecord& record) {
  const ByteSpan text = value.Of(line);
  record.isQuoted = text.front() == '"';
  if (record.isQuoted) {
    record.state = FieldState::Value;
    record.source = {value.begin + 1, value.end - 1};
    record.isEscaped = Find(text, '\\') < text.size();
  } else if (IsText(text, "null")) {
    record.state = FieldState::Nothing;
  } else {
    SetBad(record, "the field is not a string");
  }
}

BlockRange Shifted(BlockRange range, std::uint32_t by) { return {range.begin + by, range.end + by}; }

}  // namespace

JsonFormat::JsonFormat(std::string field, const std::optional<std::string>& addedName)
    : field_(std::move(field)), added_(addedName.value_or(field_)) {
  const WipedBytes name(added_.begin(), added_.end());
  addition_.push_back(',');
  AppendJsonString(name, addition_);
  addition_.push_back(':');
}

void JsonFormat::ScanObject(ByteSpan line, std::uint32_t begin, ScannedRecord& record) const {
  Members members(line);
  bool hasMember = members.Begin();
  if (!hasMember) return SetBad(record, kNoObject);
  std::optional<BlockRange> target;
  BlockRange name;
  BlockRange value;
  for (;;) {
    if (!members.Next(hasMember, name, value)) return SetBad(record, kNoObject);
    if (!hasMember) break;
    if (IsName(name.Of(line), field_)) ReadValue(line, value, record);
    if (IsName(name.Of(line), added_)) target = value;
  }
  record.isAdded = !target;
  record.source = Shifted(record.source, begin);
  record.target = Shifted(target.value_or(BlockRange{value.end, value.end}), begin);
}

void JsonFormat::Scan(ByteSpan block, std::vector<ScannedRecord>& records) const {
  std::uint32_t line = 0;
  for (std::size_t begin = 0; begin < block.size();) {
    const LineEnd end = EndOfLine(block, begin);
    ScannedRecord& record = records.emplace_back();
    record.all = RangeOf(begin, end.next);
    record.line = line++;
    const ByteSpan text = block.subspan(begin, end.text - begin);
    if (!std::ranges::all_of(text, IsSpace)) {
      ScanObject(text, record.all.begin, record);
    }
    if (record.state != FieldState::Value && record.target.end == 0) {
      record.target = {record.all.begin, record.all.begin};
    }
    begin = end.next;
  }
}

bool JsonFormat::Unescape(ByteSpan source, WipedBytes& text) const {
  return UnescapeJson(source, text);
}

void JsonFormat::WriteName(const ScannedRecord& record, WipedBytes& output) const {
  if (record.isAdded) Append(addition_, output);
}

bool JsonFormat::Write(ByteSpan value, const ScannedRecord& record, WipedBytes& output) const {
  WriteName(record, output);
  AppendJsonString(value, output);
  return true;
}

void JsonFormat::WriteNothing(const ScannedRecord& record, WipedBytes& output) const {
  if (record.target.begin == record.target.end && !record.isAdded) return;
  WriteName(record, output);
  Append(std::initializer_list<std::uint8_t>{'n', 'u', 'l', 'l'}, output);
}

}  // namespace latchkey::cli
