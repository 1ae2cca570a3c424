// Code pages for tests.
#pragma once

#include "base/code_page.h"

namespace latchkey::test {

// Has an order that no real code page has, so that bytes copied without conversion are noticed:
// byte 80 (hexadecimal) is the Euro sign, byte b above it the character 400 + b of the Cyrillic
// block.
[[nodiscard]] const CodePage& OneToOnePage();

// Similar to code page 932: 81 to 9F and E0 to FC begin a character of two bytes, A1 to DF are
// half-width katakana from U+FF61, and U+3042 is 82A0.
[[nodiscard]] const CodePage& DoubleBytePage();

// Bytes from 80 on are not characters by themselves; characters above FF take two or three bytes.
[[nodiscard]] const CodePage& Utf8Page();

// Checks that the 256 bytes have different characters, each of which is converted back to its byte.
void ExpectOneToOne(const CodePage& page);

}  // namespace latchkey::test
