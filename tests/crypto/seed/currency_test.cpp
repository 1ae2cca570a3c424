#include "crypto/seed/currency.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

constexpr std::int64_t kLargestWhole = 922'337'203'685'477;
constexpr double kSmallest = 0.0001;

Currency Largest() { return Currency::FromWhole(kLargestWhole) + Currency::FromDouble(0.5807); }
Currency Lowest() { return Currency() - Largest(); }

TEST(CurrencyTest, StartsAtZero) { EXPECT_EQ(Currency().ToDouble(), 0); }

TEST(CurrencyTest, RoundsToFourDecimalsHalfToEven) {
  // These have exact halves in the fifth decimal: 1/32, 3/32 and 5/32.
  EXPECT_EQ(Currency::FromDouble(3.14159265).ToDouble(), 3.1416);
  EXPECT_EQ(Currency::FromDouble(0.03125).ToDouble(), 0.0312);
  EXPECT_EQ(Currency::FromDouble(0.09375).ToDouble(), 0.0938);
  EXPECT_EQ(Currency::FromDouble(-0.15625).ToDouble(), -0.1562);
}

// A Double written as an exact half is really above or below it, but its product with 10,000 in
// double precision would be the half itself.
TEST(CurrencyTest, RoundsTheExactValueOfTheDouble) {
  EXPECT_EQ(Currency::FromDouble(0.00005).ToDouble(), 0.0001);  // 0.0000500000000000000024...
  EXPECT_EQ(Currency::FromDouble(-0.00005).ToDouble(), -0.0001);
  EXPECT_EQ(Currency::FromDouble(std::nextafter(0.00005, 0)).ToDouble(), 0);
  EXPECT_EQ(Currency::FromDouble(0.00015).ToDouble(), 0.0001);  // 0.00014999999999999998...
  EXPECT_EQ(Currency::FromDouble(std::nextafter(0.03125, 1)).ToDouble(), 0.0313);
  EXPECT_EQ(Currency::FromDouble(std::numeric_limits<double>::denorm_min()).ToDouble(), 0);
  EXPECT_EQ(Currency::FromDouble(-std::numeric_limits<double>::min()).ToDouble(), 0);
  // From 2^47 on, where the product has more bits than a Double.
  EXPECT_EQ(Currency::FromDouble(900000000000000.125),
            Currency::FromWhole(900'000'000'000'000) + Currency::FromDouble(0.125));
  EXPECT_EQ(Currency::FromDouble(140737488355328.03125),
            Currency::FromWhole(140'737'488'355'328) + Currency::FromDouble(0.0312));
}

TEST(CurrencyTest, FromDoubleRefusesValuesOutOfRange) {
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(922337203685477.5); }), kNoFault);
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(-922337203685477.5); }), kNoFault);
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(922337203685477.625); }), 6);
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(-922337203685477.625); }), 6);
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(1125899906842624.0); }), 6);
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(1e300); }), 6);
}

TEST(CurrencyTest, FromDoubleRefusesNotANumber) {
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(std::numeric_limits<double>::quiet_NaN()); }),
            5);
  EXPECT_EQ(FaultOf([] { return Currency::FromDouble(std::numeric_limits<double>::infinity()); }),
            6);
}

TEST(CurrencyTest, WholeNumbersAreExactUpToTheLimits) {
  EXPECT_EQ(Currency::FromWhole(kLargestWhole).ToDouble(), 922337203685477.0);
  EXPECT_EQ(Currency::FromWhole(-kLargestWhole).ToDouble(), -922337203685477.0);
  EXPECT_EQ(FaultOf([] { return Currency::FromWhole(kLargestWhole + 1); }), 6);
  EXPECT_EQ(FaultOf([] { return Currency::FromWhole(-kLargestWhole - 1); }), 6);
}

TEST(CurrencyTest, TheLargestByteCountsAreNegative) {
  constexpr std::uint64_t kLast = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(Currency::FromBytes(kLast).ToDouble(), -1);
  EXPECT_EQ(Currency::FromBytes(kLast - kLargestWhole + 1), Currency::FromWhole(-kLargestWhole));
  EXPECT_EQ(FaultOf([] { return Currency::FromBytes(kLast - kLargestWhole); }), 6);
}

TEST(CurrencyTest, ByteCountsAreExactUpToTheLimit) {
  EXPECT_EQ(Currency::FromBytes(kLargestWhole).ToDouble(), 922337203685477.0);
  EXPECT_EQ(FaultOf([] { return Currency::FromBytes(kLargestWhole + 1); }), 6);
  EXPECT_EQ(FaultOf([] { return Currency::FromBytes(std::uint64_t{1} << 63); }), 6);
}

TEST(CurrencyTest, AddsAndSubtractsExactly) {
  const Currency tenth = Currency::FromDouble(0.1);
  const Currency fifth = Currency::FromDouble(0.2);
  EXPECT_EQ(tenth + fifth, Currency::FromDouble(0.3));
  EXPECT_EQ(tenth - fifth, Currency::FromDouble(-0.1));
}

TEST(CurrencyTest, SumsBeyondTheLimitsOverflow) {
  const Currency step = Currency::FromDouble(kSmallest);
  const Currency back = Currency::FromDouble(-kSmallest);
  EXPECT_EQ(FaultOf([&] { return Largest() + step; }), 6);
  EXPECT_EQ(FaultOf([&] { return Lowest() + back; }), 6);
  EXPECT_EQ(Largest() + back - back, Largest());
  EXPECT_EQ(Largest() + Lowest(), Currency());
}

TEST(CurrencyTest, DifferencesBeyondTheLimitsOverflow) {
  const Currency step = Currency::FromDouble(kSmallest);
  const Currency back = Currency::FromDouble(-kSmallest);
  EXPECT_EQ(FaultOf([&] { return Lowest() - step; }), 6);
  EXPECT_EQ(FaultOf([&] { return Largest() - back; }), 6);
  EXPECT_EQ(FaultOf([&] { return step - Lowest(); }), 6);
  EXPECT_EQ(Currency() - Lowest(), Largest());
}

}  // namespace
}  // namespace latchkey::test
