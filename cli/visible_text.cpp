#include "cli/visible_text.h"

#include <array>
#include <cstddef>

namespace latchkey::cli {
namespace {

// The length of the sequence that begins with a byte; 0 if none does.
std::size_t LengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC0 || lead > 0xF7) return 0;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

struct Character {
  char32_t code = 0;
  std::size_t length = 0;  // in bytes; 0 if the text does not begin with UTF-8
};

Character FirstOf(std::string_view text) {
  constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = LengthFrom(lead);
  if (length <= 1) return {lead, length};
  if (length > text.size()) return {};
  char32_t code = lead & (0x7FU >> length);
  for (const char character : text.substr(1, length - 1)) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte & 0xC0U) != 0x80) return {};
    code = code << 6U | (byte & 0x3FU);
  }
  // An overlong form would hide a control character from this filter.
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kSmallest.at(length) || isSurrogate || code > 0x10FFFF) return {};
  return {code, length};
}

bool IsShown(char32_t code) {
  const auto isIn = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
  const bool isControl = code < ' ' || isIn(0x7F, 0x9F);
  const bool isSeparator = isIn(0x2028, 0x2029);
  const bool isDirection =
      code == 0x061C || isIn(0x200E, 0x200F) || isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069);
  return !isControl && !isSeparator && !isDirection;
}

std::string Escaped(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  if (bytes == "\n") return "\\n";
  std::string escaped;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    escaped += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
  }
  return escaped;
}

}  // namespace

std::string WithoutControls(std::string_view text) {
  std::string visible;
  while (!text.empty()) {
    const Character first = FirstOf(text);
    const std::string_view bytes = text.substr(0, first.length == 0 ? 1 : first.length);
    if (first.length > 0 && IsShown(first.code)) {
      visible += bytes;
    } else {
      visible += Escaped(bytes);
    }
    text.remove_prefix(bytes.size());
  }
  return visible;
}

}  // namespace latchkey::cli
