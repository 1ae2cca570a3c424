#include "crypto/seed/digits_only.h"

#include <gtest/gtest.h>

#include "tests/support/code_pages.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

TEST(DigitsOnlyTest, ADoubleLosesItsPoint) { EXPECT_EQ(DigitsOnly(1234.5), u"12345"); }

TEST(DigitsOnlyTest, ADoubleInExponentFormLosesLetterAndSigns) {
  EXPECT_EQ(DigitsOnly(-1.5e30), u"1530");
}

TEST(DigitsOnlyTest, LettersBecomeTheirCodes) {
  EXPECT_EQ(DigitsOnly(TextView(u"NTFS")), u"78847083");
}

TEST(DigitsOnlyTest, CodesAreNotPadded) { EXPECT_EQ(DigitsOnly(TextView(u"\t1a~")), u"9197126"); }

TEST(DigitsOnlyTest, DigitsAmongLettersStay) {
  EXPECT_EQ(DigitsOnly(TextView(u"FAT32")), u"70658432");
}

TEST(DigitsOnlyTest, DropsPointsCommasExponentLettersAndSigns) {
  EXPECT_EQ(DigitsOnly(TextView(u"-1,234.5E+6")), u"123456");
  EXPECT_EQ(DigitsOnly(TextView(u".,E-+")), u"");
}

TEST(DigitsOnlyTest, OnlyTheCapitalLetterIsDropped) {
  // A small e between digits reads as an exponent, so the text is a number as a whole.
  EXPECT_EQ(DigitsOnly(TextView(u"1e5")), u"1e5");
  EXPECT_EQ(DigitsOnly(TextView(u"eE")), u"101");
}

TEST(DigitsOnlyTest, ANumberKeepsItsLeadingZeros) {
  EXPECT_EQ(DigitsOnly(TextView(u"0012.50")), u"001250");
}

TEST(DigitsOnlyTest, ALongRowOfDigitsStays) {
  const Text digits(60, u'9');
  EXPECT_EQ(DigitsOnly(TextView(digits)), digits);
}

TEST(DigitsOnlyTest, ConvertsEveryKindOfValueByItsText) {
  EXPECT_EQ(DigitsOnly(std::int32_t{-42}), u"42");
  EXPECT_EQ(DigitsOnly(true), u"84114117101");  // True
  EXPECT_EQ(DigitsOnly(0.25F), u"025");
  EXPECT_EQ(DigitsOnly(Empty()), u"");
}

TEST(DigitsOnlyTest, CodesAreThoseOfTheCodePage) {
  ModuleScope scope;
  scope.Services().codePage = &OneToOnePage();
  EXPECT_EQ(DigitsOnly(TextView(u"\u20AC\u0481\u00E9")), u"12812963");
}

TEST(DigitsOnlyTest, ACodeOfTwoBytesIsOneNumber) {
  ModuleScope scope;
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_EQ(DigitsOnly(TextView(u"\u3042")), u"33440");  // 82A0
}

TEST(DigitsOnlyTest, AFaultGivesEmptyText) { EXPECT_EQ(DigitsOnly(Null()), u""); }

}  // namespace
}  // namespace latchkey::test
