// Code pages of the test's own making. Bytes 0 to 127 are ASCII in all of them.
#pragma once

#include "platform/code_page.h"

namespace latchkey::test {

// One character for each byte and back, in an order that no real page has: byte 80 (hexadecimal)
// is the Euro sign, byte b above it the character 400 + b of the Cyrillic block. Whatever keeps
// bytes and characters apart only by their numbers is seen to.
[[nodiscard]] const platform::CodePage& OneToOnePage();

// After the manner of code page 932: 81 to 9F and E0 to FC begin a character of two bytes, A1 to
// DF are half-width katakana from U+FF61, and U+3042 is 82A0.
[[nodiscard]] const platform::CodePage& DoubleBytePage();

// Bytes from 80 on are no characters by themselves; characters from 80 on take two or three bytes.
[[nodiscard]] const platform::CodePage& Utf8Page();

// Bytes 80 and 81 both denote U+20AC; all others are the characters of the same value.
[[nodiscard]] const platform::CodePage& TwoBytesOneCharacterPage();

}  // namespace latchkey::test
