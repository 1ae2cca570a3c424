// The choice of the process's code page on Linux. Windows has a system-wide one.
#pragma once

#include <cstdint>

#include "latchkey/export.h"

namespace latchkey {

enum class CodePageChoice : std::int32_t {
  Accepted,
  Unknown,      // no number of the list
  Unavailable,  // the C library's iconv cannot convert it
  TooLate,      // another code page is in use
};

// Makes text convert to bytes and back as on a Windows system with the ANSI code page `number`:
// 1250 to 1258, 874, 932, 936, 949, 950 or 65001 (UTF-8). Without a call it is 1252.
//
// Call it before any other function of the library: what converts text first settles the code page
// until the process ends, and from then on only the page in use is accepted. Anything but Accepted
// changes nothing. Raises std::bad_alloc, which changes nothing either. Any thread may call it; of
// several calls before the first use the last one holds.
[[nodiscard]] LATCHKEY_API CodePageChoice SetCodePage(std::uint32_t number);

}  // namespace latchkey
