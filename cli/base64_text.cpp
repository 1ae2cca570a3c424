#include "cli/base64_text.h"

#include <algorithm>

#include "cli/platform/base64.h"

namespace latchkey::cli {
namespace {

constexpr std::size_t kGroup = 4;  // characters, for up to three bytes
constexpr std::size_t kBytesOfLine = 57;

bool IsDigit(std::uint8_t byte) noexcept {
  const unsigned letter = byte | 0x20U;
  return (letter >= 'a' && letter <= 'z') || (byte >= '0' && byte <= '9') || byte == '+' ||
         byte == '/';
}

// Checked here, since the libraries accept different malformed texts.
bool IsWellFormed(std::span<const std::uint8_t> text) {
  const auto end = std::ranges::find(text, '=');
  const auto padding = static_cast<std::size_t>(text.end() - end);
  return text.size() % kGroup == 0 && padding <= 2 && (padding < 2 || text.back() == '=') &&
         std::all_of(text.begin(), end, IsDigit);
}

CommandError NotBase64(std::uint8_t character, std::uint64_t position, const std::string& file) {
  return WrongCharacter("not Base64", character, position, file,
                        "the characters are A to Z, a to z, 0 to 9, + and /, and = only at the "
                        "end; white space is skipped");
}

void AppendLine(std::span<const std::uint8_t> bytes, WipedBytes& text) {
  EncodeBase64Text(bytes, text);
  text.push_back('\n');
}

}  // namespace

void EncodeBase64Text(std::span<const std::uint8_t> bytes, WipedBytes& text) {
  const std::size_t length = Base64Length(bytes.size());
  EncodeBase64(bytes, ExtendBy(length + 1, text).first(length));
  text.pop_back();
}

bool DecodeBase64Text(std::span<const std::uint8_t> text, WipedBytes& bytes) {
  if (!IsWellFormed(text)) return false;
  const std::size_t before = bytes.size();
  const auto length = DecodeBase64(text, ExtendBy(text.size() / kGroup * 3, bytes));
  bytes.resize(before + length.value_or(0));
  return length.has_value();
}

void Base64Reader::Take(std::uint8_t character, const std::string& file) {
  if (IsTextSpace(character)) return;
  const std::size_t place = characters_.size() % kGroup;
  const bool isPadding = character == '=';
  // Padding is the last character of a group, or its last two.
  const bool fits = isPadding ? place >= 2 : IsDigit(character) && !hasPadding_;
  if (!fits) throw NotBase64(character, position_, file);
  hasPadding_ = isPadding;
  characters_.push_back(character);
}

WipedBytes Base64Reader::Read(std::span<const std::uint8_t> text, const std::string& file) {
  characters_.reserve(characters_.size() + text.size());
  for (const std::uint8_t character : text) {
    ++position_;
    Take(character, file);
  }
  const std::size_t whole = characters_.size() / kGroup * kGroup;
  WipedBytes bytes;
  if (!DecodeBase64Text(std::span(characters_).first(whole), bytes)) {
    throw CommandError(Failure{.text = "the last character of the Base64 text is not one that an "
                                       "encoder writes",
                               .file = file,
                               .hint = "the text may have been cut or changed"});
  }
  characters_.erase(characters_.begin(), characters_.begin() + static_cast<std::ptrdiff_t>(whole));
  return bytes;
}

void Base64Reader::Finish(const std::string& file) const {
  if (characters_.empty()) return;
  throw CommandError(Failure{.text = "the Base64 text ends within a group of four characters",
                             .file = file,
                             .hint = "the text was cut, or = was removed from its end"});
}

void Base64Writer::Write(std::span<const std::uint8_t> bytes, WipedBytes& text) {
  if (!line_.empty()) {
    const auto first = bytes.first(std::min(bytes.size(), kBytesOfLine - line_.size()));
    line_.insert(line_.end(), first.begin(), first.end());
    bytes = bytes.subspan(first.size());
    if (line_.size() < kBytesOfLine) return;
    AppendLine(line_, text);
    line_.clear();
  }
  for (; bytes.size() >= kBytesOfLine; bytes = bytes.subspan(kBytesOfLine)) {
    AppendLine(bytes.first(kBytesOfLine), text);
  }
  line_.assign(bytes.begin(), bytes.end());
}

void Base64Writer::Finish(WipedBytes& text) {
  if (!line_.empty()) AppendLine(line_, text);
  line_.clear();
}

}  // namespace latchkey::cli
