#include "crypto/currency.h"

#include <limits>

#include "diagnostics/checked_arithmetic.h"

namespace latchkey {
namespace {

using Limits = std::numeric_limits<std::int64_t>;

constexpr std::int64_t kScale = 10'000;
constexpr double kTwoTo63 = 9223372036854775808.0;

}  // namespace

Currency Currency::FromDouble(double value) {
  const double scaled = std::nearbyint(CheckedResult(value) * static_cast<double>(kScale));
  if (!(scaled >= -kTwoTo63 && scaled < kTwoTo63)) throw Fault(FaultNumber::Overflow);
  return Currency(static_cast<std::int64_t>(scaled));
}

Currency Currency::FromWhole(std::int64_t value) {
  if (value > Limits::max() / kScale || value < Limits::min() / kScale) {
    throw Fault(FaultNumber::Overflow);
  }
  return Currency(value * kScale);
}

Currency Currency::FromBytes(std::uint64_t value) {
  return FromWhole(NarrowTo<std::int64_t>(value));
}

double Currency::ToDouble() const noexcept {
  return static_cast<double>(scaled_) / static_cast<double>(kScale);
}

Currency operator+(Currency a, Currency b) {
  const bool tooHigh = b.scaled_ > 0 && a.scaled_ > Limits::max() - b.scaled_;
  const bool tooLow = b.scaled_ < 0 && a.scaled_ < Limits::min() - b.scaled_;
  if (tooHigh || tooLow) throw Fault(FaultNumber::Overflow);
  return Currency(a.scaled_ + b.scaled_);
}

Currency operator-(Currency a, Currency b) {
  const bool tooHigh = b.scaled_ < 0 && a.scaled_ > Limits::max() + b.scaled_;
  const bool tooLow = b.scaled_ > 0 && a.scaled_ < Limits::min() + b.scaled_;
  if (tooHigh || tooLow) throw Fault(FaultNumber::Overflow);
  return Currency(a.scaled_ - b.scaled_);
}

}  // namespace latchkey
