#include "platform/system_random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace latchkey::test {
namespace {

TEST(SystemRandomTest, TwoFillsDiffer) {
  std::array<std::uint8_t, 32> first{};
  std::array<std::uint8_t, 32> second{};
  ASSERT_TRUE(platform::FillRandom(first));
  ASSERT_TRUE(platform::FillRandom(second));
  EXPECT_NE(first, second);
}

TEST(SystemRandomTest, FillsExactlyTheSpan) {
  std::array<std::uint8_t, 10> bytes{};
  bool firstChanged = false;
  bool lastChanged = false;
  for (int i = 0; i < 64; ++i) {
    ASSERT_TRUE(platform::FillRandom(std::span(bytes).subspan(1, 8)));
    firstChanged = firstChanged || bytes[1] != 0;
    lastChanged = lastChanged || bytes[8] != 0;
  }
  EXPECT_TRUE(firstChanged && lastChanged);
  EXPECT_EQ(bytes.front(), 0);
  EXPECT_EQ(bytes.back(), 0);
}

TEST(SystemRandomTest, ALargeRequestIsFilledThroughout) {
  constexpr std::ptrdiff_t kPart = 64;
  std::vector<std::uint8_t> bytes(std::size_t{1} << 20);
  ASSERT_TRUE(platform::FillRandom(bytes));
  for (auto part = bytes.begin(); part != bytes.end(); part += kPart) {
    ASSERT_LT(std::count(part, part + kPart, 0), kPart) << part - bytes.begin();
  }
}

TEST(SystemRandomTest, AnEmptyRequestSucceeds) { EXPECT_TRUE(platform::FillRandom({})); }

}  // namespace
}  // namespace latchkey::test
