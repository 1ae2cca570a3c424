// Reads a text as a number the way Automation does for English (United States).
//
// The digits may be surrounded, in any order, by white space; a plus and a minus sign, before or
// after; a dollar sign; parentheses, which make the number negative. Commas are ignored anywhere
// after the first digit or the decimal point. An exponent needs a digit before it and excludes a
// leading dollar sign. &H and &O precede hexadecimal and octal digits, which allow no sign. Accepts
// and refuses the same ASCII texts as Windows' own reader under Wine, up to 30 such digits.
#pragma once

#include <cstdint>
#include <optional>

#include "base/secure_memory.h"
#include "latchkey/types.h"

namespace latchkey::platform {

struct ScannedNumber {
  bool negative = false;
  unsigned radix = 10;  // 10, 16 or 8
  // Significant digits, without leading and trailing zeros. They may be a seed's.
  WipedVector<char> digits;
  std::int64_t scale = 0;  // the value is digits * 10^scale; 0 for other radixes
};

// Nothing if the whole text is not a number.
[[nodiscard]] std::optional<ScannedNumber> ScanNumber(TextView text);

}  // namespace latchkey::platform
