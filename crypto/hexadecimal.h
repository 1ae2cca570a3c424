// Hexadecimal text: two digits for each byte, the high digit first.
#pragma once

#include <cstdint>
#include <span>

#include "latchkey/types.h"

namespace latchkey {

inline constexpr std::int32_t kDigitsPerByte = 2;

// Sets `text` to the digits of `bytes`, in upper case. Raises Overflow as CheckTextCapacity does,
// and then leaves `text` unchanged.
void EncodeHex(std::span<const std::uint8_t> bytes, Text& text);

// The same for the low 8 bits of each character's code.
void EncodeHexOfText(TextView characters, Text& text);

// Reads each pair of characters into one byte: skips spaces, tabs and line feeds, and reads
// hexadecimal digits of either case up to the first other character. A pair without a digit gives
// zero. `text` has two characters for each byte.
void DecodeHex(TextView text, std::span<std::uint8_t> bytes) noexcept;

// Sets `text` to the characters of the bytes that DecodeHex reads, without trailing spaces. Raises
// Overflow as CheckTextCapacity does, and then leaves `text` unchanged.
void DecodeHexToText(TextView digits, Text& text);

}  // namespace latchkey
