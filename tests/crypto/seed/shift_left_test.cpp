#include <gtest/gtest.h>

#include <limits>

#include "crypto/seed/seed_text.h"

namespace latchkey::test {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// Shifts one place to the left: the bit shifted out is lost, the bit below it becomes the sign.
std::int32_t ShiftedOnce(std::int32_t value) {
  const std::int64_t low31 = value & kMax;
  const std::int64_t doubled = low31 * 2;
  return static_cast<std::int32_t>(doubled > kMax ? doubled - (std::int64_t{1} << 32) : doubled);
}

TEST(ShiftLeftTest, ACountOfZeroReturnsTheValue) {
  EXPECT_EQ(ShiftLeft(7, 0), 7);
  EXPECT_EQ(ShiftLeft(-7, 0), -7);
}

TEST(ShiftLeftTest, ShiftsByOneThatNumberOfTimes) {
  for (const std::int32_t value : {1, 3, -1, 0x12345678, -0x12345678, kMin, kMax, 0}) {
    std::int32_t expected = value;
    for (std::int32_t count = 1; count <= 31; ++count) {
      expected = ShiftedOnce(expected);
      EXPECT_EQ(ShiftLeft(value, count), expected) << value << " by " << count;
    }
  }
}

TEST(ShiftLeftTest, BitsShiftedOutAreLost) {
  EXPECT_EQ(ShiftLeft(0x20000000, 3), 0);
  EXPECT_EQ(ShiftLeft(5, 30), 0x40000000);
}

TEST(ShiftLeftTest, TheTopBitBecomesTheSign) {
  EXPECT_EQ(ShiftLeft(0x10000000, 3), kMin);
  EXPECT_EQ(ShiftLeft(0x1FFFFFFF, 3), -8);
  EXPECT_EQ(ShiftLeft(3, 31), kMin);
}

TEST(ShiftLeftTest, AnyOtherCountGivesZero) {
  EXPECT_EQ(ShiftLeft(5, 32), 0);
  EXPECT_EQ(ShiftLeft(5, -1), 0);
  EXPECT_EQ(ShiftLeft(5, kMax), 0);
  EXPECT_EQ(ShiftLeft(5, kMin), 0);
}

}  // namespace
}  // namespace latchkey::test
