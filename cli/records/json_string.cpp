#include "cli/records/json_string.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "cli/utf8.h"

namespace latchkey::cli {
namespace {

constexpr std::string_view kLetters = "\"\\/bfnrt";
constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";

int DigitOf(std::uint8_t character) {
  if (character >= '0' && character <= '9') return character - '0';
  const int letter = character | 0x20;
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// The unit of \uXXXX at the start of the text.
std::optional<char32_t> UnitOf(ByteSpan text) {
  if (text.size() < 6 || text[0] != '\\' || text[1] != 'u') return {};
  char32_t unit = 0;
  for (const std::uint8_t character : text.subspan(2, 4)) {
    const int digit = DigitOf(character);
    if (digit < 0) return {};
    unit = unit * 16 + static_cast<char32_t>(digit);
  }
  return unit;
}

void AppendUtf8(char32_t code, WipedBytes& text) {
  std::array<std::uint8_t, 4> bytes{};
  const WipeAtExit wipe(bytes);
  Append(std::span(bytes).first(PutUtf8(code, bytes.data())), text);
}

// Appends the meaning of the escape that the text begins with. Returns its length; 0 if it is
// wrong.
std::size_t Unescape(ByteSpan escaped, WipedBytes& text) {
  if (escaped.size() < 2) return 0;
  const std::size_t letter = kLetters.find(static_cast<char>(escaped[1]));
  if (letter != std::string_view::npos) {
    text.push_back(static_cast<std::uint8_t>(kMeanings[letter]));
    return 2;
  }
  const auto unit = UnitOf(escaped);
  if (!unit || IsLowSurrogate(*unit)) return 0;
  if (!IsHighSurrogate(*unit)) {
    AppendUtf8(*unit, text);
    return 6;
  }
  const auto low = UnitOf(escaped.subspan(6));
  if (!low || !IsLowSurrogate(*low)) return 0;
  AppendUtf8(CharacterOfPair(*unit, *low), text);
  return 12;
}

void AppendEscape(std::uint8_t character, WipedBytes& output) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::size_t letter = kMeanings.find(static_cast<char>(character));
  output.push_back('\\');
  if (letter != std::string_view::npos) {
    output.push_back(static_cast<std::uint8_t>(kLetters[letter]));
    return;
  }
  for (const char digit : {'u', '0', '0', kDigits[character >> 4U], kDigits[character & 0xFU]}) {
    output.push_back(static_cast<std::uint8_t>(digit));
  }
}

bool MustBeEscaped(std::uint8_t character) {
  return character < ' ' || character == '"' || character == '\\';
}

}  // namespace

bool UnescapeJson(ByteSpan escaped, WipedBytes& text) {
  while (!escaped.empty()) {
    const std::size_t plain = Find(escaped, '\\');
    Append(escaped.first(plain), text);
    escaped = escaped.subspan(plain);
    if (escaped.empty()) return true;
    const std::size_t length = Unescape(escaped, text);
    if (length == 0) return false;
    escaped = escaped.subspan(length);
  }
  return true;
}

void AppendJsonString(ByteSpan text, WipedBytes& output) {
  output.push_back('"');
  for (auto rest = text; !rest.empty();) {
    const auto found = std::ranges::find_if(rest, MustBeEscaped);
    const auto plain = static_cast<std::size_t>(found - rest.begin());
    Append(rest.first(plain), output);
    if (plain < rest.size()) AppendEscape(rest[plain], output);
    rest = rest.subspan(std::min(plain + 1, rest.size()));
  }
  output.push_back('"');
}

}  // namespace latchkey::cli
