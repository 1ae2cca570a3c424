#include <gtest/gtest.h>

#include "latchkey/cls_crypto_api.h"
#include "tests/support/bytes.h"
#include "tests/support/code_pages.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class ByteArrayToStringTest : public WatchedModule {
 protected:
  std::int32_t FaultFor(const ByteArray& array) {
    return FaultOf([&] { return api.ByteArrayToString(array); });
  }

  const clsCryptoAPI api;
};

TEST_F(ByteArrayToStringTest, ReversesStringToByteArray) {
  const ByteArray array = api.StringToByteArray(TextView(u"abc"));
  EXPECT_EQ(ElementsOf(array), (Bytes{97, 98, 99, 0}));
  EXPECT_EQ(api.ByteArrayToString(array), u"abc");
}

TEST_F(ByteArrayToStringTest, IgnoresTheLastElement) {
  EXPECT_EQ(api.ByteArrayToString({65, 66, 67}), u"AB");
}

TEST_F(ByteArrayToStringTest, ASingleElementIsEmptyText) {
  EXPECT_EQ(api.ByteArrayToString({0}), u"");
  EXPECT_EQ(api.ByteArrayToString({65}), u"");
}

TEST_F(ByteArrayToStringTest, LosesTrailingSpacesOfTheData) {
  EXPECT_EQ(api.ByteArrayToString({65, 32, 32, 0}), u"A");
  EXPECT_EQ(api.ByteArrayToString({32, 32, 0}), u"");
  EXPECT_EQ(api.ByteArrayToString({32, 65, 0}), u" A");
}

TEST_F(ByteArrayToStringTest, KeepsATrailingNulOfTheData) {
  EXPECT_EQ(api.ByteArrayToString({65, 0, 0}), Text(u"A\0", 2));
  EXPECT_EQ(api.ByteArrayToString({65, 32, 0, 0}), Text(u"A \0", 3));
}

TEST_F(ByteArrayToStringTest, EveryByteSurvivesConversionToTextAndBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const ByteArray array{static_cast<std::uint8_t>(byte), 'x', 0};
    EXPECT_EQ(api.StringToByteArray(TextView(api.ByteArrayToString(array))), array) << byte;
  }
}

TEST_F(ByteArrayToStringTest, UsesTheCodePage) {
  scope.Services().codePage = &OneToOnePage();
  EXPECT_EQ(api.ByteArrayToString({0x80, 0x81, 0}), u"\u20AC\u0481");
}

TEST_F(ByteArrayToStringTest, GrowsBeyondTheFirstCapacity) {
  const ByteArray array = ArrayOf(SampleBytes(123'456));
  const Text text = api.ByteArrayToString(array);
  EXPECT_EQ(text.size(), 123'456U);
  EXPECT_TRUE(api.StringToByteArray(TextView(text)) == array);
}

TEST_F(ByteArrayToStringTest, StartsAtElementZeroWithAnyLowerBound) {
  const Bytes elements{65, 66, 67, 68};
  EXPECT_EQ(api.ByteArrayToString(ByteArray::WithShape(1, -1, 2, elements)), u"BC");
}

TEST_F(ByteArrayToStringTest, AnArrayWithoutElementsIsOutOfRange) {
  EXPECT_EQ(FaultFor(ByteArray()), 9);
  EXPECT_EQ(FaultFor(ByteArray(std::span<const std::uint8_t>())), 9);
}

TEST_F(ByteArrayToStringTest, AnArrayWithoutElementZeroIsOutOfRange) {
  EXPECT_EQ(FaultFor(ByteArray::WithShape(1, 1, 3, Bytes{65, 66, 67})), 9);
  EXPECT_EQ(FaultFor(ByteArray::WithShape(1, -3, -1, Bytes{65, 66, 67})), 9);
}

TEST_F(ByteArrayToStringTest, AnArrayOfTwoDimensionsIsOutOfRange) {
  EXPECT_EQ(FaultFor(ByteArray::WithShape(2, 0, 1, Bytes{65, 66, 67, 68})), 9);
}

TEST_F(ByteArrayToStringTest, AByteThatIsNotACharacterBecomesTheOneWithItsNumber) {
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_EQ(api.ByteArrayToString({65, 0x82, 0}), u"A\u0082");
}

TEST_F(ByteArrayToStringTest, DoesNotWriteTheRecord) {
  LeaveEarlierFailure();
  static_cast<void>(api.ByteArrayToString({65, 0}));
  static_cast<void>(FaultFor(ByteArray()));
  EXPECT_TRUE(journal.All().empty());
}

}  // namespace
}  // namespace latchkey::test
