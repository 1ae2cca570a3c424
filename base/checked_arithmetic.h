// Integer and floating arithmetic whose failures are faults.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

#include "latchkey/fault.h"

namespace latchkey {

// `value` as the narrower type To; raises Overflow when it does not fit.
template <std::integral To, std::integral From>
[[nodiscard]] constexpr To NarrowTo(From value) {
  if (!std::in_range<To>(value)) throw Fault(FaultNumber::Overflow);
  return static_cast<To>(value);
}

// Signed 32-bit sum, difference and product; raise Overflow when the exact result does not fit.
[[nodiscard]] constexpr std::int32_t CheckedAdd(std::int32_t a, std::int32_t b) {
  return NarrowTo<std::int32_t>(std::int64_t{a} + b);
}
[[nodiscard]] constexpr std::int32_t CheckedSubtract(std::int32_t a, std::int32_t b) {
  return NarrowTo<std::int32_t>(std::int64_t{a} - b);
}
[[nodiscard]] constexpr std::int32_t CheckedMultiply(std::int32_t a, std::int32_t b) {
  return NarrowTo<std::int32_t>(std::int64_t{a} * b);
}

// Returns `value`; raises Overflow for infinity and InvalidProcedureCall for "not a number".
[[nodiscard]] inline double CheckedResult(double value) {
  if (std::isnan(value)) throw Fault(FaultNumber::InvalidProcedureCall);
  if (std::isinf(value)) throw Fault(FaultNumber::Overflow);
  return value;
}

// Raises DivisionByZero for a zero divisor, else checks the quotient.
[[nodiscard]] inline double CheckedDivide(double dividend, double divisor) {
  if (divisor == 0) throw Fault(FaultNumber::DivisionByZero);
  return CheckedResult(dividend / divisor);
}

// Raises InvalidProcedureCall for a negative value.
[[nodiscard]] inline double CheckedSquareRoot(double value) {
  if (value < 0) throw Fault(FaultNumber::InvalidProcedureCall);
  return CheckedResult(std::sqrt(value));
}

// A Double rounded half to even as a signed 32-bit integer; raises Overflow when it does not fit.
[[nodiscard]] inline std::int32_t RoundToLong(double value) {
  const double rounded = std::nearbyint(CheckedResult(value));
  if (rounded < std::numeric_limits<std::int32_t>::min() ||
      rounded > std::numeric_limits<std::int32_t>::max()) {
    throw Fault(FaultNumber::Overflow);
  }
  return static_cast<std::int32_t>(rounded);
}

}  // namespace latchkey
