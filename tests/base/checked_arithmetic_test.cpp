#include "base/checked_arithmetic.h"

#include <gtest/gtest.h>

#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargestDouble = std::numeric_limits<double>::max();

TEST(NarrowToTest, KeepsValuesThatFit) {
  EXPECT_EQ(NarrowTo<std::int16_t>(32767), 32767);
  EXPECT_EQ(NarrowTo<std::int16_t>(-32768), -32768);
  EXPECT_EQ(NarrowTo<std::uint8_t>(255U), 255);
  EXPECT_EQ(NarrowTo<std::int32_t>(std::uint64_t{2147483647}), kMax);
}

TEST(NarrowToTest, RaisesOverflowJustBeyondTheLimits) {
  EXPECT_EQ(FaultOf([] { return NarrowTo<std::int16_t>(32768); }), 6);
  EXPECT_EQ(FaultOf([] { return NarrowTo<std::int16_t>(-32769); }), 6);
  EXPECT_EQ(FaultOf([] { return NarrowTo<std::uint8_t>(256U); }), 6);
  EXPECT_EQ(FaultOf([] { return NarrowTo<std::uint8_t>(-1); }), 6);
  EXPECT_EQ(FaultOf([] { return NarrowTo<std::int32_t>(std::uint64_t{2147483648}); }), 6);
}

TEST(CheckedLongTest, GivesExactResultsUpToTheLimits) {
  EXPECT_EQ(CheckedAdd(kMax - 1, 1), kMax);
  EXPECT_EQ(CheckedAdd(kMin + 1, -1), kMin);
  EXPECT_EQ(CheckedSubtract(kMin + 1, 1), kMin);
  EXPECT_EQ(CheckedSubtract(-1, kMin), kMax);
  EXPECT_EQ(CheckedMultiply(-1073741824, 2), kMin);
  EXPECT_EQ(CheckedMultiply(-7, 3), -21);
}

TEST(CheckedLongTest, RaisesOverflowBeyondTheLimits) {
  EXPECT_EQ(FaultOf([] { return CheckedAdd(kMax, 1); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedAdd(kMin, -1); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedSubtract(kMin, 1); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedSubtract(0, kMin); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedMultiply(1073741824, 2); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedMultiply(kMin, -1); }), 6);
}

TEST(CheckedDoubleTest, ReturnsNumbersUnchanged) {
  EXPECT_EQ(CheckedResult(kLargestDouble), kLargestDouble);
  EXPECT_EQ(CheckedResult(-0.5), -0.5);
  EXPECT_EQ(CheckedDivide(1, -4), -0.25);
  EXPECT_EQ(CheckedSquareRoot(6.25), 2.5);
  EXPECT_EQ(CheckedSquareRoot(0), 0);
}

TEST(CheckedDoubleTest, RaisesOverflowForInfinity) {
  EXPECT_EQ(FaultOf([] { return CheckedResult(kInfinity); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedResult(-kInfinity); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedDivide(kLargestDouble, 0.5); }), 6);
  EXPECT_EQ(FaultOf([] { return CheckedSquareRoot(kInfinity); }), 6);
}

TEST(CheckedDoubleTest, RaisesDivisionByZeroForAnyDividend) {
  EXPECT_EQ(FaultOf([] { return CheckedDivide(1, 0); }), 11);
  EXPECT_EQ(FaultOf([] { return CheckedDivide(0, 0); }), 11);
  EXPECT_EQ(FaultOf([] { return CheckedDivide(1, -0.0); }), 11);
}

TEST(CheckedDoubleTest, RaisesInvalidProcedureCallForNotANumber) {
  EXPECT_EQ(FaultOf([] { return CheckedResult(kNotANumber); }), 5);
  EXPECT_EQ(FaultOf([] { return CheckedSquareRoot(-0.25); }), 5);
  EXPECT_EQ(FaultOf([] { return CheckedSquareRoot(kNotANumber); }), 5);
}

TEST(RoundToLongTest, RoundsHalfToEven) {
  EXPECT_EQ(RoundToLong(0.5), 0);
  EXPECT_EQ(RoundToLong(1.5), 2);
  EXPECT_EQ(RoundToLong(2.5), 2);
  EXPECT_EQ(RoundToLong(-2.5), -2);
  EXPECT_EQ(RoundToLong(2.51), 3);
}

TEST(RoundToLongTest, ChecksTheRangeAfterRounding) {
  EXPECT_EQ(RoundToLong(2147483647.25), kMax);
  EXPECT_EQ(RoundToLong(-2147483648.5), kMin);
  EXPECT_EQ(FaultOf([] { return RoundToLong(2147483647.5); }), 6);
  EXPECT_EQ(FaultOf([] { return RoundToLong(-2147483649.0); }), 6);
  EXPECT_EQ(FaultOf([] { return RoundToLong(kNotANumber); }), 5);
}

}  // namespace
}  // namespace latchkey::test
