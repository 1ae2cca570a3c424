// Chooses the process's code page on Linux. (Windows has a system-wide one.)
#pragma once

#include <cstdint>

#include "latchkey/export.h"

namespace latchkey {

enum class CodePageChoice : std::int32_t {
  Accepted,
  Unknown,      // not one of the supported numbers
  Unavailable,  // the C library's iconv cannot convert it
  TooLate,      // another code page is in use
};

// Sets the code page for converting text to bytes and back, with the same results as on a Windows
// system whose ANSI code page is `number`: 1250 to 1258, 874, 932, 936, 949, 950 or 65001 (UTF-8).
// The default is 1252.
//
// Call it before any other function of the library: the first conversion of text fixes the code
// page until the process ends, and from then on only that page is accepted. A result other than
// Accepted, or std::bad_alloc, changes nothing. Any thread may call it; the last call before the
// first use counts.
[[nodiscard]] LATCHKEY_API CodePageChoice SetCodePage(std::uint32_t number);

}  // namespace latchkey
