// The letters that CreateSaltValue draws, and their frequencies.
#include <gtest/gtest.h>

#include <map>

#include "latchkey/cls_crypto_api.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class SaltLettersTest : public WatchedModule {
 protected:
  Text Letters(std::int32_t count) { return api.CreateSaltValue(count, true); }

  clsCryptoAPI api;
};

bool IsLetter(char16_t character) {
  return (character >= u'A' && character <= u'Z') || (character >= u'a' && character <= u'z');
}

TEST_F(SaltLettersTest, HaveTheRequestedLength) {
  for (const std::int32_t count : {1, 5, 20, 9'999, 10'000, 10'050}) {
    EXPECT_EQ(Letters(count).size(), static_cast<std::size_t>(count));
  }
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(SaltLettersTest, DifferFromCallToCall) { EXPECT_NE(Letters(40), Letters(40)); }

// 34,800 draws from 58 codes, of which d to i have two each. The expected count of a letter is 600
// with a standard deviation of 24, and 1,200 with 34 for d to i; every bound is more than 8
// standard deviations away.
TEST_F(SaltLettersTest, IncludeAllLettersWithDToITwiceAsOften) {
  std::map<char16_t, int> counts;
  for (const char16_t letter : Letters(34'800)) {
    ASSERT_TRUE(IsLetter(letter)) << static_cast<unsigned>(letter);
    ++counts[letter];
  }
  EXPECT_EQ(counts.size(), 52U);
  for (const auto& [letter, count] : counts) {
    const bool doubled = letter >= u'd' && letter <= u'i';
    EXPECT_GT(count, doubled ? 900 : 380) << static_cast<char>(letter);
    EXPECT_LT(count, doubled ? 1500 : 900) << static_cast<char>(letter);
  }
}

}  // namespace
}  // namespace latchkey::test
