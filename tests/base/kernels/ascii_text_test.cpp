// Each form of the ASCII conversion: it converts whole steps, up to the first one with another
// character.
#include "base/kernels/ascii_text.h"

#include <gtest/gtest.h>

#include "latchkey/types.h"
#include "tests/support/cpu_levels.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kLongest = 1000;
constexpr std::size_t kMargin = 64;

class KernelAsciiTextTest : public ::testing::TestWithParam<CpuLevel> {
 protected:
  // ASCII with at most one other element, `beyond`, and the length of the steps before that one.
  template <class Element>
  std::vector<Element> Some(std::size_t from, Element beyond, std::size_t& steps) {
    std::vector<Element> elements(from + random.Below(kLongest));
    for (Element& element : elements) element = static_cast<Element>(random.Below(0x80));
    const std::size_t length = elements.size() - from;
    const std::size_t position = random.Below(2 * kLongest);
    if (position < length) elements[from + position] = beyond;
    const std::size_t ascii = std::min(length, position);
    steps = ascii - ascii % AsciiText::kStep;
    return elements;
  }

  template <class From, class To>
  void ExpectSteps(std::size_t (*convert)(const From*, std::size_t, To*) noexcept, From beyond) {
    const std::size_t from = random.Below(kMargin);
    const std::size_t to = random.Below(kMargin);
    std::size_t steps = 0;
    const auto elements = Some<From>(from, beyond, steps);
    std::vector<To> expected(to + elements.size() + kMargin, To{0xEE});
    auto memory = expected;
    for (std::size_t i = 0; i < steps; ++i) expected[to + i] = static_cast<To>(elements[from + i]);
    ASSERT_EQ(convert(elements.data() + from, elements.size() - from, memory.data() + to), steps);
    ASSERT_EQ(memory, expected) << "from " << from << ", to " << to << ", steps " << steps;
  }

  const AsciiText& form = AsciiTextAt(GetParam());
  RandomSource random{20263};
};

TEST_P(KernelAsciiTextTest, NarrowsUpToTheFirstStepBeyondAscii) {
  for (int round = 0; round < 2000; ++round) {
    const auto bit = static_cast<char16_t>(0x80 << random.Below(9));
    ExpectSteps<char16_t, std::uint8_t>(form.narrow, static_cast<char16_t>(bit | u'a'));
  }
}

TEST_P(KernelAsciiTextTest, WidensUpToTheFirstStepBeyondAscii) {
  for (int round = 0; round < 2000; ++round) {
    ExpectSteps<std::uint8_t, char16_t>(form.widen, static_cast<std::uint8_t>(0x80 | round));
  }
}

TEST(KernelAsciiTextChoiceTest, TheProcessUsesTheChosenLevel) {
  EXPECT_EQ(&FastestAsciiText(), &AsciiTextAt(ChosenCpuLevel()));
}

INSTANTIATE_TEST_SUITE_P(Levels, KernelAsciiTextTest, ::testing::ValuesIn(LevelsOfThisMachine()),
                         NameOfLevel);

}  // namespace
}  // namespace latchkey::test
