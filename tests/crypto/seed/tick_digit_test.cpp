#include <gtest/gtest.h>

#include <vector>

#include "crypto/seed/seed_text.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class TickDigitTest : public WatchedModule {
 protected:
  std::int32_t DigitOf(std::uint32_t ticks) {
    probe.SetTicks({ticks});
    return GetTickDigit();
  }
};

TEST_F(TickDigitTest, SumsTheDigitsUntilOneIsLeft) {
  EXPECT_EQ(DigitOf(99995), 5);  // 41, 5
  EXPECT_EQ(DigitOf(12345), 6);  // 15, 6
  EXPECT_EQ(DigitOf(99999), 9);  // 45, 9
  EXPECT_EQ(DigitOf(19), 1);     // 10, 1
}

TEST_F(TickDigitTest, ASingleDigitIsReturnedUnchanged) {
  for (std::uint32_t digit = 0; digit <= 9; ++digit) {
    EXPECT_EQ(DigitOf(digit), static_cast<std::int32_t>(digit));
  }
  EXPECT_EQ(DigitOf(10), 1);
}

TEST_F(TickDigitTest, UsesOnlyTheLastFiveCharacters) {
  EXPECT_EQ(DigitOf(100'000), 0);
  EXPECT_EQ(DigitOf(1'299'995), 5);
  EXPECT_EQ(DigitOf(2147483647), 1);  // 83647: 28, 10, 1
}

TEST_F(TickDigitTest, TicksFromMinus9999ToMinus1GiveANegativeNumber) {
  EXPECT_EQ(DigitOf(static_cast<std::uint32_t>(-1)), -1);
  EXPECT_EQ(DigitOf(static_cast<std::uint32_t>(-42)), -42);
  EXPECT_EQ(DigitOf(static_cast<std::uint32_t>(-9999)), -9999);
}

TEST_F(TickDigitTest, ALongerNegativeNumberLosesItsSign) {
  EXPECT_EQ(DigitOf(static_cast<std::uint32_t>(-10'000)), 1);
  EXPECT_EQ(DigitOf(static_cast<std::uint32_t>(-99'995)), 5);
  EXPECT_EQ(DigitOf(0x80000000U), 2);  // -2147483648: 83648, 29, 11, 2
}

TEST_F(TickDigitTest, ReadsTheCounterOnce) {
  DigitOf(99995);
  EXPECT_EQ(probe.calls, std::vector<std::string>{"GetTickCount"});
}

}  // namespace
}  // namespace latchkey::test
