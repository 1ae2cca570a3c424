// Answers of getrandom that are neither all bytes nor a failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <numeric>

#include "platform/system_random.h"
#include "tests/support/random_source_script.h"

namespace latchkey::test {
namespace {

class RandomSourceAnswersTest : public ::testing::Test {
 protected:
  // Fills at most that number of bytes, with 1, 2, 3...
  long Give(std::span<std::uint8_t> rest, std::size_t atMost) {
    const auto part = rest.first(std::min(rest.size(), atMost));
    for (std::uint8_t& byte : part) byte = ++last;
    return static_cast<long>(part.size());
  }

  [[nodiscard]] static std::array<std::uint8_t, 16> OneToSixteen() {
    std::array<std::uint8_t, 16> numbers{};
    std::iota(numbers.begin(), numbers.end(), std::uint8_t{1});
    return numbers;
  }

  std::array<std::uint8_t, 16> bytes{};
  std::uint8_t last = 0;
  int calls = 0;
};

TEST_F(RandomSourceAnswersTest, AfterAShortAnswerTheRestIsRequested) {
  for (const std::size_t part : {1U, 5U, 8U, 15U}) {
    last = 0;
    const RandomSourceScript script([&](std::span<std::uint8_t> rest) { return Give(rest, part); });
    bytes.fill(0);
    ASSERT_TRUE(platform::FillRandom(bytes));
    EXPECT_EQ(bytes, OneToSixteen()) << part;
  }
}

TEST_F(RandomSourceAnswersTest, AnInterruptedCallIsRepeated) {
  const RandomSourceScript script([&](std::span<std::uint8_t> rest) {
    return ++calls % 2 == 1 ? -long{EINTR} : Give(rest, 3);
  });
  ASSERT_TRUE(platform::FillRandom(bytes));
  EXPECT_EQ(bytes, OneToSixteen());
}

TEST_F(RandomSourceAnswersTest, AFailureAfterAShortAnswerIsAFailure) {
  const RandomSourceScript script(
      [&](std::span<std::uint8_t> rest) { return ++calls == 1 ? Give(rest, 8) : -long{EIO}; });
  EXPECT_FALSE(platform::FillRandom(bytes));
  EXPECT_EQ(calls, 2);
}

TEST_F(RandomSourceAnswersTest, NoBytesAndNoErrorIsAFailure) {
  const RandomSourceScript script([&](auto) { return ++calls > 2 ? -long{EIO} : 0L; });
  EXPECT_FALSE(platform::FillRandom(bytes));
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace latchkey::test
