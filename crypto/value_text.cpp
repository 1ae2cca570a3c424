#include "crypto/value_text.h"

#include <stdexcept>

#include "latchkey/fault.h"

namespace latchkey {

Text TextOfValue(const Variant& value) {
  if (std::holds_alternative<Null>(value)) throw Fault(FaultNumber::InvalidUseOfNull);
  try {
    return platform::TextOfVariant(value);
  } catch (const std::invalid_argument&) {
    throw Fault(FaultNumber::TypeMismatch);
  }
}

double NumberIn(TextView text) {
  const auto [reading, value] = platform::ReadNumber(text);
  if (reading == platform::NumberReading::Overflow) throw Fault(FaultNumber::Overflow);
  if (reading != platform::NumberReading::Number) throw Fault(FaultNumber::TypeMismatch);
  return value;
}

}  // namespace latchkey
