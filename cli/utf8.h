// UTF-8, one character at a time.
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

}  // namespace latchkey::cli
