#include "crypto/seed/currency.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/checked_arithmetic.h"

namespace latchkey {
namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLowest = -kLargest;
constexpr std::int64_t kScale = 10'000;

// number * 2^-places, rounded half to even, for 0 to 64 places.
std::uint64_t ShiftRounded(std::uint64_t number, int places) {
  if (places == 0) return number;
  const std::uint64_t whole = places < 64 ? number >> places : 0;
  const std::uint64_t half = std::uint64_t{1} << (places - 1);
  const std::uint64_t rest = number - (places < 64 ? whole << places : 0);
  const bool up = rest > half || (rest == half && whole % 2 != 0);
  return whole + (up ? 1 : 0);
}

// The magnitude of a finite value in ten-thousandths. A Double is 53 bits times a power of two, and
// 10,000 is 625 times 2^4, so the product with 625 is exact in 64 bits.
std::uint64_t TenThousandths(double value) {
  constexpr int kDoubleBits = std::numeric_limits<double>::digits;
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(value), &exponent);
  const auto product = static_cast<std::uint64_t>(std::ldexp(fraction, kDoubleBits)) * 625;
  exponent += 4 - kDoubleBits;
  if (exponent <= 0) return exponent >= -64 ? ShiftRounded(product, -exponent) : 0;
  if (product > (std::uint64_t{kLargest} >> std::min(exponent, 63))) {
    throw Fault(FaultNumber::Overflow);
  }
  return product << exponent;
}

}  // namespace

Currency Currency::FromDouble(double value) {
  const auto magnitude = NarrowTo<std::int64_t>(TenThousandths(CheckedResult(value)));
  return Currency(std::signbit(value) ? -magnitude : magnitude);
}

Currency Currency::FromWhole(std::int64_t value) {
  if (value > kLargest / kScale || value < kLowest / kScale) throw Fault(FaultNumber::Overflow);
  return Currency(value * kScale);
}

Currency Currency::FromBytes(std::uint64_t value) {
  return FromWhole(static_cast<std::int64_t>(value));
}

double Currency::ToDouble() const noexcept {
  return static_cast<double>(scaled_) / static_cast<double>(kScale);
}

Currency operator+(Currency a, Currency b) {
  const bool tooHigh = b.scaled_ > 0 && a.scaled_ > kLargest - b.scaled_;
  const bool tooLow = b.scaled_ < 0 && a.scaled_ < kLowest - b.scaled_;
  if (tooHigh || tooLow) throw Fault(FaultNumber::Overflow);
  return Currency(a.scaled_ + b.scaled_);
}

Currency operator-(Currency a, Currency b) {
  const bool tooHigh = b.scaled_ < 0 && a.scaled_ > kLargest + b.scaled_;
  const bool tooLow = b.scaled_ > 0 && a.scaled_ < kLowest + b.scaled_;
  if (tooHigh || tooLow) throw Fault(FaultNumber::Overflow);
  return Currency(a.scaled_ - b.scaled_);
}

}  // namespace latchkey
