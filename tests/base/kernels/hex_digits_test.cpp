// Each form of the hexadecimal conversion, compared with one that reads and writes digits one by
// one.
#include "base/kernels/hex_digits.h"

#include <gtest/gtest.h>

#include "latchkey/types.h"
#include "tests/support/cpu_levels.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

constexpr TextView kUpper = u"0123456789ABCDEF";
constexpr TextView kLower = u"0123456789abcdef";
constexpr TextView kSkipped = u" \t\n";
constexpr std::size_t kLongest = 300;
constexpr std::size_t kMargin = 64;

// The value of a pair, read from left to right.
std::uint8_t NumberOf(TextView pair) {
  std::size_t number = 0;
  for (const char16_t character : pair) {
    if (kSkipped.find(character) != TextView::npos) continue;
    const std::size_t digit = std::min(kUpper.find(character), kLower.find(character));
    if (digit == TextView::npos) break;
    number = number * 16 + digit;
  }
  return static_cast<std::uint8_t>(number);
}

class KernelHexDigitsTest : public ::testing::TestWithParam<CpuLevel> {
 protected:
  // Mostly digits and neighboring characters, also as the low byte of a larger character.
  char16_t SomeCharacter() {
    const std::size_t kind = random.Below(8);
    if (kind == 0) return static_cast<char16_t>(random.Below(0x10000));
    if (kind == 1) return kSkipped[random.Below(kSkipped.size())];
    const auto ascii = static_cast<char16_t>(random.Below(0x80));
    if (kind == 2) return ascii;
    const char16_t digit = (kind < 6 ? kUpper : kLower)[random.Below(16)];
    return kind == 3 ? static_cast<char16_t>(digit | random.Below(0x100) << 8) : digit;
  }

  [[nodiscard]] Text Some(std::size_t length) {
    Text text;
    for (std::size_t i = 0; i < length; ++i) text += SomeCharacter();
    return text;
  }

  const HexDigits& form = HexDigitsAt(GetParam());
  RandomSource random{20262};
};

TEST_P(KernelHexDigitsTest, EncodesAnyLengthAtAnyAddress) {
  for (int round = 0; round < 2000; ++round) {
    const Bytes bytes = random.Some(random.Below(kLongest));
    const std::size_t offset = random.Below(kMargin);
    Text expected(offset + 2 * bytes.size() + kMargin, u'x');
    Text memory = expected;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      expected[offset + 2 * i] = kUpper[bytes[i] >> 4];
      expected[offset + 2 * i + 1] = kUpper[bytes[i] & 15];
    }
    form.encode(bytes.data(), bytes.size(), memory.data() + offset);
    ASSERT_EQ(memory, expected) << "offset " << offset << ", length " << bytes.size();
  }
}

TEST_P(KernelHexDigitsTest, DecodesAnyLengthAtAnyAddress) {
  for (int round = 0; round < 2000; ++round) {
    const std::size_t length = random.Below(kLongest);
    const std::size_t from = random.Below(kMargin);
    const std::size_t to = random.Below(kMargin);
    const Text text = Some(from + 2 * length);
    Bytes expected(to + length + kMargin, 0xEE);
    Bytes memory = expected;
    for (std::size_t i = 0; i < length; ++i) {
      expected[to + i] = NumberOf(TextView(text).substr(from + 2 * i, 2));
    }
    form.decode(text.data() + from, length, memory.data() + to);
    ASSERT_EQ(memory, expected) << "from " << from << ", to " << to << ", length " << length;
  }
}

// Every character in either place of a pair, next to a digit, a skipped character and another one.
TEST_P(KernelHexDigitsTest, ReadsEveryCharacterInEveryPlace) {
  for (const char16_t other : {u'b', u' ', u'g'}) {
    Text text;
    Bytes expected;
    for (std::uint32_t character = 0; character < 0x10000; ++character) {
      const Text pair{static_cast<char16_t>(character), other};
      const Text turned{other, static_cast<char16_t>(character)};
      text += pair + turned;
      expected.insert(expected.end(), {NumberOf(pair), NumberOf(turned)});
    }
    Bytes decoded(expected.size());
    form.decode(text.data(), decoded.size(), decoded.data());
    EXPECT_TRUE(decoded == expected) << static_cast<int>(other);
  }
}

TEST(KernelHexDigitsChoiceTest, TheProcessUsesTheChosenLevel) {
  EXPECT_EQ(&FastestHexDigits(), &HexDigitsAt(ChosenCpuLevel()));
}

INSTANTIATE_TEST_SUITE_P(Levels, KernelHexDigitsTest, ::testing::ValuesIn(LevelsOfThisMachine()),
                         NameOfLevel);

}  // namespace
}  // namespace latchkey::test
