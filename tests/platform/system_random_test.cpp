#include "platform/system_random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <span>
#include <vector>

#include "tests/support/random_source_script.h"

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

TEST(SystemRandomTest, AFailureOfTheSourceFailsFillRandom) {
  const RandomSourceScript script([](auto) { return kInputOutputError; });
  std::array<std::uint8_t, 16> bytes{};
  EXPECT_FALSE(platform::FillRandom(bytes));
}

TEST(SystemRandomTest, EveryByteComesFromTheSource) {
  std::uint8_t next = 0;
  const RandomSourceScript script([&](std::span<std::uint8_t> bytes) {
    for (std::uint8_t& byte : bytes) byte = ++next;
    return static_cast<long>(bytes.size());
  });
  for (std::size_t size = 1; size < 64; ++size) {
    next = 0;
    std::vector<std::uint8_t> bytes(size);
    std::vector<std::uint8_t> expected(size);
    std::iota(expected.begin(), expected.end(), std::uint8_t{1});
    ASSERT_TRUE(platform::FillRandom(bytes));
    ASSERT_EQ(bytes, expected);
  }
}

}  // namespace
}  // namespace latchkey::test
