// Hexadecimal text: two digits for each byte, the high digit first.
#pragma once

#include <cstdint>
#include <span>

#include "latchkey/types.h"

namespace latchkey {

inline constexpr std::int32_t kDigitsPerByte = 2;

// Sets `text` to the digits of `bytes`, in upper case. Raises Overflow, and leaves `text` as it
// was, when a working text could not hold them.
void EncodeHex(std::span<const std::uint8_t> bytes, Text& text);

// The same for the low 8 bits of each character's code.
void EncodeHexOfText(TextView characters, Text& text);

// Reads each pair of characters as a number into one byte: spaces, tabs and line feeds are skipped,
// and hexadecimal digits of either case are read up to the first other character. No digit gives
// 0. `text` has two characters for each byte.
void DecodeHex(TextView text, std::span<std::uint8_t> bytes) noexcept;

// Sets `text` to the characters of the bytes that DecodeHex reads, without trailing spaces. Raises
// Overflow, and leaves `text` as it was, for a byte that is no character and when a working text
// could not hold them.
void DecodeHexToText(TextView digits, Text& text);

}  // namespace latchkey
