#include "crypto/random_number.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <span>
#include <vector>

#include "crypto/crypto_state.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

using RandomNumberTest = WatchedModule;

// Draws numbers from a range so wide that equal sequences do not occur by chance, from the same
// initial state and the same readings of the machine.
std::vector<float> DrawAfterReset() {
  ThisThreadCrypto().generatorState = {1, 2};
  std::vector<float> row(8);
  for (float& number : row) number = RandomNumberInRange(0, 8'000'000);
  return row;
}

TEST_F(RandomNumberTest, IsAWholeNumberInItsRange) {
  for (int draw = 0; draw < 5000; ++draw) {
    const float number = RandomNumberInRange(65, 122);
    ASSERT_GE(number, 65);
    ASSERT_LE(number, 122);
    ASSERT_EQ(number, std::floor(number));
  }
}

// The probability that a number is missing from 500 draws is (6/7)^500, less than 10^-33.
TEST_F(RandomNumberTest, ReturnsEveryNumberOfItsRange) {
  std::set<float> drawn;
  for (int draw = 0; draw < 500; ++draw) drawn.insert(RandomNumberInRange(-3, 3));
  EXPECT_EQ(drawn, (std::set<float>{-3, -2, -1, 0, 1, 2, 3}));
}

TEST_F(RandomNumberTest, ARangeOfOneNumberReturnsThatNumber) {
  EXPECT_EQ(RandomNumberInRange(7, 7), 7);
}

TEST_F(RandomNumberTest, TheClockDoesNotDetermineTheResult) {
  probe.SetTicks({123'456});
  EXPECT_NE(DrawAfterReset(), DrawAfterReset());
}

// State and random bytes are the same, so only the seed can make a difference.
TEST_F(RandomNumberTest, TheSeedChangesTheResult) {
  scope.Services().fillRandom = [](std::span<std::uint8_t> bytes) noexcept {
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0x5A});
    return true;
  };
  const auto drawWith = [this](std::uint32_t ticks) {
    probe.SetTicks({ticks});
    return DrawAfterReset();
  };
  EXPECT_EQ(drawWith(123'456), drawWith(123'456));
  EXPECT_NE(drawWith(123'456), drawWith(123'465));
}

TEST_F(RandomNumberTest, NoBytesFromTheRandomSourceIsAFault) {
  scope.Services().fillRandom = [](std::span<std::uint8_t>) noexcept { return false; };
  EXPECT_EQ(FaultOf([] { return RandomNumberInRange(65, 122); }), 5);
}

TEST_F(RandomNumberTest, EveryDrawReseedsTheGenerator) {
  for (int draw = 0; draw < 3; ++draw) static_cast<void>(RandomNumberInRange(65, 122));
  EXPECT_EQ(probe.CountCalls("EnumWindows"), 3U);
}

TEST_F(RandomNumberTest, KeepsTheGeneratorsStateForTheThread) {
  const auto before = ThisThreadCrypto().generatorState;
  static_cast<void>(RandomNumberInRange(65, 122));
  EXPECT_NE(ThisThreadCrypto().generatorState, before);
}

TEST_F(RandomNumberTest, AFaultOfTheSeedReachesTheCallerUnrecorded) {
  probe.SetTicks({1000, 6});
  probe.volume.reset();
  EXPECT_EQ(FaultOf([] { return RandomNumberInRange(65, 122); }), 11);
  EXPECT_TRUE(journal.All().empty());
}

}  // namespace
}  // namespace latchkey::test
