// The text of any value, and the number that a Double's text reads as.
#include <cmath>
#include <stdexcept>

#include "platform/variant_text.h"
#include "tests/system/fuzz/input.h"

using latchkey::Date;
using latchkey::Empty;
using latchkey::Null;
using latchkey::Text;
using latchkey::TextView;
using latchkey::Variant;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;
namespace platform = latchkey::platform;

namespace {

Variant TakeVariant(Input& input, Text& text) {
  switch (input.Take<std::uint8_t>() % 8) {
    case 0:
      return Empty{};
    case 1:
      return Null{};
    case 2:
      return (input.Take<std::uint8_t>() & 1U) != 0;
    case 3:
      return input.Take<std::int32_t>();
    case 4:
      return input.Take<float>();
    case 5:
      return input.Take<double>();
    case 6:
      return Date{input.Take<double>()};
    default:
      text = input.TakeText();
      return TextView(text);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Text text;
  const Variant value = TakeVariant(input, text);
  if (const auto* given = std::get_if<TextView>(&value)) {
    static_cast<void>(platform::ReadNumber(*given));
    static_cast<void>(platform::IsNumericText(*given));
    return 0;
  }
  try {
    text = platform::TextOfVariant(value);
  } catch (const std::invalid_argument&) {
    Require(std::holds_alternative<Null>(value) || std::holds_alternative<Date>(value));
    return 0;
  }
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr || !std::isfinite(*number)) return 0;
  const auto [reading, read] = platform::ReadNumber(text);
  // Fifteen digits of the largest numbers may round to a value beyond every Double.
  if (reading == platform::NumberReading::Overflow) return 0;
  Require(reading == platform::NumberReading::Number);
  Require(std::abs(read - *number) <= std::abs(*number) * 1e-14 + 1e-320);
  return 0;
}
