// Code pages of the test's own making.
#pragma once

#include "base/code_page.h"

namespace latchkey::test {

// An order that no real code page has: byte 80 (hexadecimal) is the Euro sign, byte b above it the
// character 400 + b of the Cyrillic block. A byte kept as the character of its number is noticed.
[[nodiscard]] const CodePage& OneToOnePage();

// After the manner of code page 932: 81 to 9F and E0 to FC begin a character of two bytes, A1 to
// DF are half-width katakana from U+FF61, and U+3042 is 82A0.
[[nodiscard]] const CodePage& DoubleBytePage();

// Bytes from 80 on are no characters by themselves; characters above FF take two or three bytes.
[[nodiscard]] const CodePage& Utf8Page();

}  // namespace latchkey::test
