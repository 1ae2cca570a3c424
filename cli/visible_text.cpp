#include "cli/visible_text.h"

#include <cstddef>

#include "cli/utf8.h"

namespace latchkey::cli {
namespace {

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
    const Utf8Character first = FirstCharacter(text);
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
