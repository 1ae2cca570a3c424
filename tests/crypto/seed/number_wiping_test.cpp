// Functions that read numbers must wipe the seed before they free memory.
#include <gtest/gtest.h>

#include "crypto/seed/digits_only.h"
#include "tests/support/bytes.h"
#include "tests/support/freed_memory.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

constexpr std::string_view kDigits = "41757402841549";

// The number of freed blocks that hold the digits, as bytes or as text.
template <class Operation>
std::size_t BlocksLeftBy(Operation&& operation) {
  const Bytes digits = BytesOf(kDigits);
  std::size_t blocks = 0;
  for (const Bytes& form : {digits, AsText(digits)}) {
    const FreedMemory freed(form);
    [[maybe_unused]] const auto result = operation();
    blocks += freed.BlocksWithSecret();
  }
  return blocks;
}

TEST(NumberWipingTest, ReadingANumberWipesItsDigits) {
  const Text once = Wide(kDigits);
  for (const Text& text : {once, once + once, u"&H" + once, u"-" + once + u"e4"}) {
    EXPECT_EQ(BlocksLeftBy([&] { return platform::IsNumericText(text); }), 0U);
    EXPECT_EQ(BlocksLeftBy([&] { return platform::ReadNumber(text).value; }), 0U);
  }
}

// The letter's code makes the text longer.
TEST(NumberWipingTest, DigitsOnlyWipesTheMemoryItOutgrows) {
  const ModuleScope scope;
  const Text text = Wide(kDigits) + Text(100, u'z');
  EXPECT_EQ(BlocksLeftBy([&] { return DigitsOnly(TextView(text)); }), 0U);
}

TEST(NumberWipingTest, TheSearchFindsWhatIsNotWiped) {
  EXPECT_EQ(BlocksLeftBy([] { return Wide(kDigits).size(); }), 1U);
}

}  // namespace
}  // namespace latchkey::test
