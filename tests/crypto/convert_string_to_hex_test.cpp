#include <gtest/gtest.h>

#include "latchkey/cls_crypto_api.h"
#include "tests/support/bytes.h"
#include "tests/support/code_pages.h"
#include "tests/support/failing_memory.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class ConvertStringToHexTest : public WatchedModule {
 protected:
  const clsCryptoAPI api;
};

TEST_F(ConvertStringToHexTest, GivesTwoUpperCaseDigitsForEachCharacter) {
  EXPECT_EQ(api.ConvertStringToHex(u"A\n"), u"410A");
  EXPECT_EQ(api.ConvertStringToHex(u"\u00FF"), u"FF");
  EXPECT_EQ(api.ConvertStringToHex(TextView(u"\0", 1)), u"00");
}

TEST_F(ConvertStringToHexTest, TheFlagChangesNothing) {
  EXPECT_EQ(api.ConvertStringToHex(u"A\nJ", true), u"410A4A");
  EXPECT_EQ(api.ConvertStringToHex(u"A\nJ", false), u"410A4A");
}

TEST_F(ConvertStringToHexTest, EmptyTextGivesEmptyText) {
  EXPECT_EQ(api.ConvertStringToHex(u""), u"");
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ConvertStringToHexTest, KeepsTrailingSpacesAsDigits) {
  EXPECT_EQ(api.ConvertStringToHex(u"A "), u"4120");
}

TEST_F(ConvertStringToHexTest, UsesTheCodesOfTheCodePage) {
  EXPECT_EQ(api.ConvertStringToHex(u"\u20AC\u0152"), u"808C");
  scope.Services().codePage = &OneToOnePage();
  EXPECT_EQ(api.ConvertStringToHex(u"\u0481"), u"81");
}

TEST_F(ConvertStringToHexTest, ACharacterOutsideTheCodePageBecomesAQuestionMark) {
  EXPECT_EQ(api.ConvertStringToHex(u"\u3042"), u"3F");
}

TEST_F(ConvertStringToHexTest, EveryByteSurvivesConversionAndBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const ByteArray array{static_cast<std::uint8_t>(byte), 'x', 0};
    const Text digits = api.ConvertStringToHex(api.ByteArrayToString(array));
    EXPECT_EQ(digits, Wide(Hex(array.TextElements())));
    EXPECT_EQ(api.ConvertStringFromHex(digits), api.ByteArrayToString(array));
  }
}

TEST_F(ConvertStringToHexTest, ACharacterOfTwoBytesGivesItsLowByte) {
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_EQ(api.ConvertStringToHex(u"a\u3042"), u"61A0");
  scope.Services().codePage = &Utf8Page();
  EXPECT_EQ(api.ConvertStringToHex(u"\u0100\u00E9"), u"80E9");
}

TEST_F(ConvertStringToHexTest, GrowsBeyondTheFirstCapacity) {
  const Bytes bytes = SampleBytes(50'000);
  const Text text = api.ByteArrayToString(ArrayOf(bytes));
  EXPECT_TRUE(api.ConvertStringToHex(text) == Wide(Hex(bytes)));
}

TEST_F(ConvertStringToHexTest, SuccessKeepsAnEarlierRecord) {
  LeaveEarlierFailure();
  EXPECT_EQ(api.ConvertStringToHex(u"A"), u"41");
  EXPECT_EQ(ValuesOf(record), kEarlierFailure);
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ConvertStringToHexTest, AFaultIsRecordedAndGivesEmptyText) {
  FailAllocation(1);
  EXPECT_EQ(api.ConvertStringToHex(u"no short text"), u"");
  EXPECT_EQ(journal.All(), RunTimeWrites(441, 7, "Out of memory"));
}

TEST_F(ConvertStringToHexTest, AFaultKeepsTheApplicationFields) {
  LeaveEarlierFailure();
  FailAllocation(1);
  EXPECT_EQ(api.ConvertStringToHex(u"no short text", true), u"");
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{441, 1, 150, "earlier message", 7, "Out of memory", true, 0}));
}

}  // namespace
}  // namespace latchkey::test
