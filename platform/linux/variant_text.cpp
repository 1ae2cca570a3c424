#include "platform/variant_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/linux/date_text.h"
#include "platform/linux/number_text.h"

namespace latchkey::platform {
namespace {

Text WideText(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

// Longer than any text made here.
using NumberBuffer = std::array<char, 64>;

// Whether `value` is halfway between two numbers with that number of significant digits.
bool IsTie(double value, int digits) {
  constexpr int kMoreDigits = 20;
  NumberBuffer buffer{};
  std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                std::chars_format::scientific, digits - 1 + kMoreDigits);
  const std::string_view text(buffer.data(), buffer.size());
  constexpr std::string_view kHalf = "50000000000000000000";
  static_assert(kHalf.size() == kMoreDigits);
  return text.substr(static_cast<std::size_t>(digits) + 1, kMoreDigits) == kHalf;
}

// The shorter of plain and exponent form, with at most the given number of significant digits and
// at least two digits in the exponent, independent of the host's locale. Rounds halfway values away
// from zero, where the C++ library would round to even.
Text GeneralForm(double value, int digits) {
  if (std::isnan(value)) return u"NAN";
  if (std::isinf(value)) return value < 0 ? u"-INF" : u"INF";
  if (value == 0) return u"0";
  if (IsTie(value, digits)) value = std::nextafter(value, std::copysign(HUGE_VAL, value));
  NumberBuffer buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                     std::chars_format::general, digits);
  Text text(buffer.data(), written.ptr);
  if (const auto mark = text.find(u'e'); mark != Text::npos) text[mark] = u'E';
  return text;
}

struct TextMaker {
  Text operator()(Empty) const { return {}; }
  Text operator()(Null) const { throw std::invalid_argument("Null has no text"); }
  Text operator()(TextView text) const { return Text(text); }
  Text operator()(bool value) const { return value ? u"True" : u"False"; }
  Text operator()(std::int32_t value) const { return WideText(std::to_string(value)); }
  Text operator()(float value) const { return GeneralForm(static_cast<double>(value), 7); }
  Text operator()(double value) const { return GeneralForm(value, 15); }
  Text operator()(Date date) const {
    const auto text = TextOfDate(date.days);
    if (!text) throw std::invalid_argument("no such date");
    return WideText(*text);
  }
};

// Digits of another radix form a 32-bit number whose highest bit is the sign.
NumberFromText RadixValue(const ScannedNumber& number) {
  const char* const end = number.digits.data() + number.digits.size();
  std::uint32_t bits = 0;
  const auto read =
      std::from_chars(number.digits.data(), end, bits, static_cast<int>(number.radix));
  if (read.ec == std::errc::result_out_of_range) return {NumberReading::Overflow, 0};
  return {NumberReading::Number, static_cast<double>(static_cast<std::int32_t>(bits))};
}

// The value nearest to the digits; 0 if it is too small for a Double.
NumberFromText DecimalValue(const ScannedNumber& number) {
  const std::string exponent = 'e' + std::to_string(number.scale);
  WipedVector<char> text(1, '0');
  text.insert(text.end(), number.digits.begin(), number.digits.end());
  text.insert(text.end(), exponent.begin(), exponent.end());
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec == std::errc::result_out_of_range) {
    const auto magnitude = static_cast<std::int64_t>(number.digits.size()) + number.scale;
    if (magnitude > 0) return {NumberReading::Overflow, 0};
    value = 0;
  }
  return {NumberReading::Number, number.negative ? -value : value};
}

}  // namespace

Text TextOfDouble(double value) { return GeneralForm(value, 15); }

Text TextOfVariant(const Variant& value) { return std::visit(TextMaker(), value); }

NumberFromText ReadNumber(TextView text) {
  const auto number = ScanNumber(text);
  if (!number) return {};
  return number->radix == 10 ? DecimalValue(*number) : RadixValue(*number);
}

bool IsNumericText(TextView text) { return ScanNumber(text).has_value(); }

}  // namespace latchkey::platform
