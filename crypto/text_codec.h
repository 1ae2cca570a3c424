// Converts characters to bytes and back, one for one, by the thread's code page.
//
// Every byte has its own character in the code page, so the component can store text as bytes
// without loss.
#pragma once

#include <cstdint>
#include <ranges>
#include <span>

#include "base/secure_memory.h"
#include "latchkey/types.h"

namespace latchkey {

// The byte of each character; a character that the code page cannot represent gives 63 ("?").
// Raises Overflow for a character whose code takes more than one byte.
[[nodiscard]] WipedBytes EncodeText(TextView text);
void EncodeText(TextView text, std::span<std::uint8_t> bytes);

// The low 8 bits of each character's code. Never raises Overflow.
void EncodeLowBytes(TextView text, std::span<std::uint8_t> bytes);

// Sets `text` to the characters of `bytes`.
void DecodeBytes(std::span<const std::uint8_t> bytes, Text& text);
// The same, into the same number of characters.
void DecodeBytes(std::span<const std::uint8_t> bytes, std::span<char16_t> characters);

// The space, as a character and as its code in every code page.
inline constexpr std::uint8_t kSpace = 0x20;

// Characters or codes without their trailing spaces: a view of the argument.
template <std::ranges::contiguous_range Codes>
[[nodiscard]] auto TrimTrailingSpaces(const Codes& codes) noexcept {
  std::span<const std::ranges::range_value_t<Codes>> text(codes);
  while (!text.empty() && text.back() == kSpace) text = text.first(text.size() - 1);
  return text;
}

// The same without their leading spaces.
template <std::ranges::contiguous_range Codes>
[[nodiscard]] auto TrimSpaces(const Codes& codes) noexcept {
  std::span<const std::ranges::range_value_t<Codes>> text(codes);
  while (!text.empty() && text.front() == kSpace) text = text.subspan(1);
  return TrimTrailingSpaces(text);
}

}  // namespace latchkey
