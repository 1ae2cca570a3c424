// Automation's conversions between numbers and text, in the user's locale.
#pragma once

#include <cstdint>

#include "latchkey/types.h"

namespace latchkey::platform {

// The text of a Double: up to 15 significant digits, the locale's decimal separator, exponent form
// ("1E+30") for magnitudes that 15 digits cannot show.
Text TextOfDouble(double value);

// The text of any Variant except Null and text: "" for Empty, "True" or "False", digits for
// numbers, a date in the locale's short form. On Linux the locale is English (United States).
// Throws std::invalid_argument for Null and for a date outside the years 100 to 9999.
Text TextOfVariant(const Variant& value);

enum class NumberReading { Number, NotANumber, Overflow };

struct NumberFromText {
  NumberReading reading = NumberReading::NotANumber;
  double value = 0;
};

// Reads a whole text strictly as a Double, as Automation does: surrounding spaces, a sign, digits
// with the locale's separators, an exponent. The empty text is not a number.
NumberFromText ReadNumber(TextView text);

// The locale-aware numeric test: whether the whole text reads as a number.
bool IsNumericText(TextView text);

}  // namespace latchkey::platform
