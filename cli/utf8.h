// UTF-8 and surrogate pairs, one character at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace latchkey::cli {

struct Utf8Character {
  char32_t code = 0;
  std::size_t length = 0;  // in bytes; 0 if the text does not begin with UTF-8
};

// The first character of a text, which must not be empty. Overlong forms and surrogates are not
// UTF-8.
[[nodiscard]] Utf8Character FirstCharacter(std::string_view text);

// Writes a character of at most U+10FFFF, in up to 4 bytes. Returns the number of bytes.
std::size_t PutUtf8(char32_t code, std::uint8_t* bytes) noexcept;

// The units of UTF-16 that begin and end a surrogate pair.
[[nodiscard]] constexpr bool IsHighSurrogate(char32_t unit) noexcept {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
[[nodiscard]] constexpr bool IsLowSurrogate(char32_t unit) noexcept {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The character of a surrogate pair.
[[nodiscard]] constexpr char32_t CharacterOfPair(char32_t high, char32_t low) noexcept {
  return 0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00);
}

}  // namespace latchkey::cli
