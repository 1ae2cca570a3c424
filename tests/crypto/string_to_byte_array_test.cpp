#include <gtest/gtest.h>

#include "latchkey/cls_crypto_api.h"
#include "tests/support/bytes.h"
#include "tests/support/code_pages.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class StringToByteArrayTest : public WatchedModule {
 protected:
  Bytes Converted(const Variant& value) { return ElementsOf(api.StringToByteArray(value)); }

  // The codes of an ASCII text, followed by the trailing zero.
  static Bytes CodesAndZero(std::string_view text) { return ElementsOf(ArrayOf(text)); }

  const clsCryptoAPI api;
};

TEST_F(StringToByteArrayTest, ReturnsTheCodesAndOneZeroElement) {
  const ByteArray array = api.StringToByteArray(TextView(u"abc"));
  EXPECT_EQ(array.Dimensions(), 1);
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), 3);
  EXPECT_EQ(ElementsOf(array), (Bytes{97, 98, 99, 0}));
}

TEST_F(StringToByteArrayTest, EmptyTextGivesASingleZeroThatIsEmptyTextAgain) {
  const ByteArray array = api.StringToByteArray(TextView());
  EXPECT_EQ(array.UpperBound(), 0);
  EXPECT_EQ(ElementsOf(array), Bytes{0});
  EXPECT_EQ(api.ByteArrayToString(array), u"");
}

TEST_F(StringToByteArrayTest, KeepsSpacesAndNuls) {
  EXPECT_EQ(Converted(TextView(u" a\0 ", 4)), (Bytes{32, 97, 0, 32, 0}));
}

TEST_F(StringToByteArrayTest, ANumberCountsAsItsText) {
  EXPECT_EQ(Converted(std::int32_t{12}), (Bytes{49, 50, 0}));
  EXPECT_EQ(Converted(std::int32_t{-7}), CodesAndZero("-7"));
  EXPECT_EQ(Converted(1.5), CodesAndZero("1.5"));
  EXPECT_EQ(Converted(0.25F), CodesAndZero("0.25"));
}

TEST_F(StringToByteArrayTest, EmptyCountsAsEmptyText) { EXPECT_EQ(Converted(Empty()), Bytes{0}); }

TEST_F(StringToByteArrayTest, ABooleanCountsAsItsWord) {
  EXPECT_EQ(Converted(true), CodesAndZero("True"));
  EXPECT_EQ(Converted(false), CodesAndZero("False"));
}

TEST_F(StringToByteArrayTest, ADateCountsAsItsText) {
  EXPECT_EQ(Converted(Date{36526}), CodesAndZero("1/1/2000"));
}

TEST_F(StringToByteArrayTest, AValueWithoutATextIsRefused) {
  EXPECT_EQ(FaultOf([&] { return api.StringToByteArray(Date{1e10}); }), 13);
}

TEST_F(StringToByteArrayTest, NullIsRefused) {
  EXPECT_EQ(FaultOf([&] { return api.StringToByteArray(Null()); }), 94);
}

TEST_F(StringToByteArrayTest, UsesTheCodePage) {
  scope.Services().codePage = &OneToOnePage();
  EXPECT_EQ(Converted(TextView(u"\u20AC\u0481")), (Bytes{0x80, 0x81, 0}));
}

TEST_F(StringToByteArrayTest, ACharacterOutsideTheCodePageBecomesAQuestionMark) {
  EXPECT_EQ(Converted(TextView(u"a\u3042\u0100")), (Bytes{97, 63, 63, 0}));
}

TEST_F(StringToByteArrayTest, ACharacterOfSeveralBytesOverflows) {
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_EQ(FaultOf([&] { return api.StringToByteArray(TextView(u"a\u3042")); }), 6);
  EXPECT_EQ(Converted(TextView(u"\uFF71")), (Bytes{0xB1, 0}));
  scope.Services().codePage = &Utf8Page();
  EXPECT_EQ(FaultOf([&] { return api.StringToByteArray(TextView(u"\u0100")); }), 6);
  EXPECT_EQ(Converted(TextView(u"\u00E9")), (Bytes{0xE9, 0}));
}

TEST_F(StringToByteArrayTest, DoesNotWriteTheRecord) {
  LeaveEarlierFailure();
  Converted(TextView(u"abc"));
  static_cast<void>(FaultOf([&] { return api.StringToByteArray(Null()); }));
  EXPECT_TRUE(journal.All().empty());
}

}  // namespace
}  // namespace latchkey::test
