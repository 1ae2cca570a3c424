// Reads a text as a number the way Automation does for English (United States).
//
// Around the digits stand, in any order: white space; a plus and a minus sign, before or after; a
// dollar sign; parentheses, which make the number negative. Commas may follow the first digit or
// the decimal point anywhere and mean nothing. An exponent needs a digit before it and excludes a
// leading dollar sign. &H and &O lead hexadecimal and octal digits, which take no sign. Accepts and
// refuses the same ASCII texts as Windows' own reader under Wine, up to 30 digits of those two.
#pragma once

#include <cstdint>
#include <optional>

#include "base/secure_memory.h"
#include "base/text.h"

namespace latchkey::platform {

struct ScannedNumber {
  bool negative = false;
  unsigned radix = 10;  // 10, 16 or 8
  // Significant ones: no zeros lead, none follow the decimal point in vain. They may be a seed's.
  WipedVector<char> digits;
  std::int64_t scale = 0;  // the value is digits * 10^scale; 0 for other radixes
};

// Nothing when the whole text is no number.
[[nodiscard]] std::optional<ScannedNumber> ScanNumber(TextView text);

}  // namespace latchkey::platform
