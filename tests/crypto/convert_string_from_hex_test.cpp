#include <gtest/gtest.h>

#include "latchkey/cls_crypto_api.h"
#include "tests/support/bytes.h"
#include "tests/support/code_pages.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class ConvertStringFromHexTest : public WatchedModule {
 protected:
  const clsCryptoAPI api;
};

TEST_F(ConvertStringFromHexTest, ReadsDigitsOfEitherCase) {
  EXPECT_EQ(api.ConvertStringFromHex(u"4a4B"), u"JK");
  EXPECT_EQ(api.ConvertStringFromHex(u"ffFF0A"), u"\u00FF\u00FF\n");
}

TEST_F(ConvertStringFromHexTest, EmptyTextGivesEmptyTextAndNoRecord) {
  EXPECT_EQ(api.ConvertStringFromHex(u""), u"");
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ConvertStringFromHexTest, RemovesADecodedTrailingSpace) {
  EXPECT_EQ(api.ConvertStringFromHex(u"4120"), u"A");
  EXPECT_EQ(api.ConvertStringFromHex(u"20412020"), u" A");
  EXPECT_EQ(api.ConvertStringFromHex(u"2020"), u"");
}

// More spaces than one piece of the search, which goes backward from the end.
TEST_F(ConvertStringFromHexTest, RemovesAnyNumberOfTrailingSpaces) {
  for (const std::size_t spaces : {63U, 64U, 65U, 1000U}) {
    Text digits = u"41";
    for (std::size_t i = 0; i < spaces; ++i) digits += u"20";
    EXPECT_EQ(api.ConvertStringFromHex(digits), u"A") << spaces;
    EXPECT_EQ(api.ConvertStringFromHex(digits.substr(2)), u"") << spaces;
  }
}

TEST_F(ConvertStringFromHexTest, KeepsADecodedTrailingNul) {
  EXPECT_EQ(api.ConvertStringFromHex(u"412000"), Text(u"A \0", 3));
}

TEST_F(ConvertStringFromHexTest, APairWithoutDigitsGivesANul) {
  EXPECT_EQ(api.ConvertStringFromHex(u"zz41"), Text(u"\0A", 2));
}

struct Pair {
  Text pair;
  char16_t character;
};

class HexPairTest : public ConvertStringFromHexTest, public testing::WithParamInterface<Pair> {};

TEST_P(HexPairTest, IsReadUpToItsFirstOtherCharacter) {
  const Text text = GetParam().pair + u"21";
  EXPECT_EQ(api.ConvertStringFromHex(text), (Text{GetParam().character, u'!'}));
  EXPECT_TRUE(journal.All().empty());
}

INSTANTIATE_TEST_SUITE_P(Digits, HexPairTest,
                         testing::Values(Pair{u"4a", 0x4A}, Pair{u"4A", 0x4A}, Pair{u"aF", 0xAF},
                                         Pair{u"00", 0}, Pair{u"fF", 0xFF}, Pair{u"09", 9}));

INSTANTIATE_TEST_SUITE_P(OtherCharacters, HexPairTest,
                         testing::Values(Pair{u"G7", 0}, Pair{u"7G", 7}, Pair{u"g1", 0},
                                         Pair{u"1g", 1}, Pair{u"/1", 0}, Pair{u":1", 0},
                                         Pair{u"@1", 0}, Pair{u"`1", 0}, Pair{u"-1", 0},
                                         Pair{u"&H", 0}, Pair{u"0x", 0},
                                         Pair{u"\uFF11"
                                              u"1",
                                              0}));

INSTANTIATE_TEST_SUITE_P(IgnoredCharacters, HexPairTest,
                         testing::Values(Pair{u" 7", 7}, Pair{u"7 ", 7}, Pair{u"  ", 0},
                                         Pair{u"\t7", 7}, Pair{u"7\t", 7}, Pair{u"\n7", 7},
                                         Pair{u"7\n", 7}, Pair{u"\n\t", 0}));

INSTANTIATE_TEST_SUITE_P(NotIgnoredCharacters, HexPairTest,
                         testing::Values(Pair{u"\r7", 0}, Pair{u"7\r", 7}, Pair{u"\v7", 0},
                                         Pair{u"\f7", 0},
                                         Pair{u"\u00A0"
                                              u"7",
                                              0},
                                         Pair{Text(u"\0"
                                                   u"7",
                                                   2),
                                              0}));

TEST_F(ConvertStringFromHexTest, UsesTheCodePage) {
  EXPECT_EQ(api.ConvertStringFromHex(u"808C"), u"\u20AC\u0152");
  scope.Services().codePage = &OneToOnePage();
  EXPECT_EQ(api.ConvertStringFromHex(u"81"), u"\u0481");
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_EQ(api.ConvertStringFromHex(u"4182"), u"A\u0082");
}

TEST_F(ConvertStringFromHexTest, GrowsBeyondTheFirstCapacity) {
  const Bytes bytes = SampleBytes(100'001);
  const Text text = api.ConvertStringFromHex(Wide(Hex(bytes)));
  EXPECT_TRUE(api.StringToByteArray(TextView(text)) == ArrayOf(bytes));
}

TEST_F(ConvertStringFromHexTest, AnOddLengthIsRecordedAndGivesEmptyText) {
  EXPECT_EQ(api.ConvertStringFromHex(u"414"), u"");
  EXPECT_EQ(journal.All(), ApplicationWrites(727, 123, "Error converting data"));
}

TEST_F(ConvertStringFromHexTest, AnyTextOfOddLengthIsRefused) {
  for (const TextView text :
       {TextView(u"4"), TextView(u" "), TextView(u"zz!"), TextView(u"\u3042")}) {
    journal.Clear();
    EXPECT_EQ(api.ConvertStringFromHex(text), u"");
    EXPECT_EQ(journal.All(), ApplicationWrites(727, 123, "Error converting data"));
  }
}

TEST_F(ConvertStringFromHexTest, AnOddLengthKeepsTheRunTimeFields) {
  LeaveEarlierFailure();
  EXPECT_EQ(api.ConvertStringFromHex(u"414"), u"");
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{727, 2, 123, "Error converting data", 13, "earlier fault", true, 0}));
}

TEST_F(ConvertStringFromHexTest, AFailedWriteToTheRecordIsAFaultOfTheOperation) {
  spy.ThrowAt("AppErrorNumber", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_EQ(api.ConvertStringFromHex(u"414"), u"");
  EXPECT_EQ(ValuesOf(record), (RecordValues{440, 1, 0, "", 13, "Type mismatch", true, 0}));
}

TEST_F(ConvertStringFromHexTest, SuccessKeepsAnEarlierRecord) {
  LeaveEarlierFailure();
  EXPECT_EQ(api.ConvertStringFromHex(u"41"), u"A");
  EXPECT_EQ(ValuesOf(record), kEarlierFailure);
  EXPECT_TRUE(journal.All().empty());
}

}  // namespace
}  // namespace latchkey::test
