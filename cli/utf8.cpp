#include "cli/utf8.h"

#include <array>

namespace latchkey::cli {
namespace {

// The length of the sequence that begins with a byte; 0 if none does.
std::size_t LengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC0 || lead > 0xF7) return 0;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

}  // namespace

Utf8Character FirstCharacter(std::string_view text) {
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
  const bool isSurrogate = IsHighSurrogate(code) || IsLowSurrogate(code);
  if (code < kSmallest.at(length) || isSurrogate || code > 0x10FFFF) return {};
  return {code, length};
}

std::size_t PutUtf8(char32_t code, std::uint8_t* bytes) noexcept {
  if (code < 0x80) {
    *bytes = static_cast<std::uint8_t>(code);
    return 1;
  }
  const std::size_t length = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
  for (std::size_t i = length - 1; i > 0; --i, code >>= 6U) {
    bytes[i] = static_cast<std::uint8_t>(0x80U | (code & 0x3FU));
  }
  bytes[0] = static_cast<std::uint8_t>((0xF00U >> length & 0xF0U) | code);
  return length;
}

}  // namespace latchkey::cli
