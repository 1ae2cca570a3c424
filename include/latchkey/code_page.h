// The choice of the process's code page on Linux. Windows has a system-wide one.
#pragma once

#include <cstdint>

#include "latchkey/export.h"

namespace latchkey {

enum class CodePageChoice : std::int32_t {
  Accepted,
  Unknown,      // not a number of the list
  Unavailable,  // the C library's iconv cannot convert it
  TooLate,      // another code page is in use
};

// Makes text convert to bytes and back as on a Windows system with the ANSI code page `number`:
// 1250 to 1258, 874, 932, 936, 949, 950 or 65001 (UTF-8). Without a call it is 1252.
//
// Call it before any other function of the library: the first conversion of text fixes the code
// page until the process ends, and from then on only that page is accepted. Results other than
// Accepted change nothing, nor does std::bad_alloc. Any thread may call it; of several calls before
// the first use, the last one counts.
[[nodiscard]] LATCHKEY_API CodePageChoice SetCodePage(std::uint32_t number);

}  // namespace latchkey
