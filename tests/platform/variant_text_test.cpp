// Automation's text forms in English (United States), which Wine and the Linux library both use.
#include "platform/variant_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

using platform::IsNumericText;
using platform::NumberReading;
using platform::ReadNumber;
using platform::TextOfDouble;
using platform::TextOfVariant;

template <class Value>
using TextPairs = std::vector<std::pair<Value, TextView>>;

TEST(TextOfDoubleTest, HasUpToFifteenSignificantDigits) {
  const TextPairs<double> pairs{{0.0, u"0"},
                                {-0.0, u"0"},
                                {0.5, u"0.5"},
                                {-1.25, u"-1.25"},
                                {1234.5, u"1234.5"},
                                {0.1 + 0.2, u"0.3"},
                                {1.0 / 3, u"0.333333333333333"},
                                {2.0 / 3, u"0.666666666666667"},
                                {123456789.123456789, u"123456789.123457"},
                                {123456789012345.0, u"123456789012345"},
                                {999999999999999.0, u"999999999999999"}};
  for (const auto& [value, text] : pairs) EXPECT_EQ(TextOfDouble(value), text);
}

TEST(TextOfDoubleTest, TakesTheExponentFormBeyondFifteenDigitsAndBelowTheFourthDecimal) {
  const TextPairs<double> pairs{{1e14, u"100000000000000"},
                                {1e15, u"1E+15"},
                                {999999999999999.875, u"1E+15"},
                                {1234567890123456.0, u"1.23456789012346E+15"},
                                {1e30, u"1E+30"},
                                {-1e300, u"-1E+300"},
                                {1.7976931348623157e308, u"1.79769313486232E+308"},
                                {0.0001, u"0.0001"},
                                {0.00012345, u"0.00012345"},
                                {1e-5, u"1E-05"},
                                {-1.5e-7, u"-1.5E-07"},
                                {5e-324, u"4.94065645841247E-324"}};
  for (const auto& [value, text] : pairs) EXPECT_EQ(TextOfDouble(value), text);
}

TEST(TextOfDoubleTest, RoundsHalfwayValuesAwayFromZero) {
  const TextPairs<double> pairs{{914858601381810.5, u"914858601381811"},
                                {914858601381811.5, u"914858601381812"},
                                {-686256630245158.5, u"-686256630245159"},
                                {51493912232596.25, u"51493912232596.3"},
                                {2627979923947925.0, u"2.62797992394793E+15"}};
  for (const auto& [value, text] : pairs) EXPECT_EQ(TextOfDouble(value), text);
}

TEST(TextOfVariantTest, WritesNumbersAndBooleans) {
  EXPECT_EQ(TextOfVariant(Variant(std::int32_t{0})), u"0");
  EXPECT_EQ(TextOfVariant(Variant(std::numeric_limits<std::int32_t>::max())), u"2147483647");
  EXPECT_EQ(TextOfVariant(Variant(std::numeric_limits<std::int32_t>::min())), u"-2147483648");
  EXPECT_EQ(TextOfVariant(Variant(-1.25)), u"-1.25");
  EXPECT_EQ(TextOfVariant(Variant(true)), u"True");
  EXPECT_EQ(TextOfVariant(Variant(false)), u"False");
  EXPECT_EQ(TextOfVariant(Variant(Empty())), u"");
}

TEST(TextOfVariantTest, ASingleHasUpToSevenSignificantDigits) {
  const TextPairs<float> pairs{{0.1F, u"0.1"},
                               {1.0F / 3, u"0.3333333"},
                               {9999999.0F, u"9999999"},
                               {1e7F, u"1E+07"},
                               {16777216.0F, u"1.677722E+07"},
                               {19662.125F, u"19662.13"},
                               {3.4028235e38F, u"3.402823E+38"},
                               {0.0001F, u"0.0001"},
                               {1e-5F, u"1E-05"}};
  for (const auto& [value, text] : pairs) EXPECT_EQ(TextOfVariant(Variant(value)), text);
}

TEST(TextOfVariantTest, ADateIsInTheShortFormWithItsTimeUnlessThatIsMidnight) {
  const TextPairs<double> pairs{{36526, u"1/1/2000"},
                                {36526.75, u"1/1/2000 6:00:00 PM"},
                                {44197.99999, u"1/1/2021 11:59:59 PM"},
                                {44197.999999, u"1/2/2021 12:00:00 AM"},
                                {45000.123456, u"3/15/2023 2:57:47 AM"},
                                {60, u"2/28/1900"},
                                {61, u"3/1/1900"},
                                {1, u"12/31/1899"},
                                {2958465, u"12/31/9999"},
                                {-657434, u"1/1/100"}};
  for (const auto& [days, text] : pairs) EXPECT_EQ(TextOfVariant(Variant(Date{days})), text);
}

TEST(TextOfVariantTest, ATimeOnDayZeroHasNoDate) {
  const TextPairs<double> pairs{{0, u"12:00:00 AM"},           {0.5, u"12:00:00 PM"},
                                {0.25, u"6:00:00 AM"},         {13.0 / 24, u"1:00:00 PM"},
                                {-0.25, u"6:00:00 AM"},        {0.00001, u"12:00:01 AM"},
                                {1.5 / 86400, u"12:00:02 AM"}, {0.5 / 24, u"12:30:00 AM"}};
  for (const auto& [days, text] : pairs) EXPECT_EQ(TextOfVariant(Variant(Date{days})), text);
}

TEST(TextOfVariantTest, TheTimeBeforeDayZeroCountsForward) {
  const TextPairs<double> pairs{
      {-1, u"12/29/1899"}, {-1.25, u"12/29/1899 6:00:00 AM"}, {-2.75, u"12/28/1899 6:00:00 PM"}};
  for (const auto& [days, text] : pairs) EXPECT_EQ(TextOfVariant(Variant(Date{days})), text);
}

TEST(TextOfVariantTest, DatesOutsideTheCalendarHaveNoText) {
  for (const double days : {2958466.0, -657435.0, 1e10, -1e300}) {
    EXPECT_THROW(static_cast<void>(TextOfVariant(Variant(Date{days}))), std::invalid_argument);
  }
}

TEST(TextOfVariantTest, NullHasNoText) {
  EXPECT_THROW(static_cast<void>(TextOfVariant(Variant(Null{}))), std::invalid_argument);
}

struct Reading {
  const char* text;
  double value;
};

TEST(ReadNumberTest, ReadsTheWholeText) {
  for (const auto& [text, value] : std::vector<Reading>{{"0", 0},
                                                        {"12", 12},
                                                        {" 12 ", 12},
                                                        {"\t5\r\n", 5},
                                                        {"+5", 5},
                                                        {"-5", -5},
                                                        {"- 5", -5},
                                                        {"5-", -5},
                                                        {"1.5", 1.5},
                                                        {".5", 0.5},
                                                        {"5.", 5},
                                                        {"1,234.5", 1234.5},
                                                        {"1,23", 123},
                                                        {"1e5", 1e5},
                                                        {"1E+5", 1e5},
                                                        {"1.5e-3", 1.5e-3},
                                                        {"$5", 5},
                                                        {"-$5", -5},
                                                        {"5$", 5},
                                                        {"(5)", -5},
                                                        {"($1,000)", -1000},
                                                        {"&H1F", 31},
                                                        {"&o17", 15},
                                                        {"0e0", 0},
                                                        {"-0.000", 0},
                                                        {"007", 7},
                                                        {"1e-400", 0},
                                                        {"9007199254740991", 9007199254740991.0}}) {
    const auto number = ReadNumber(Wide(text));
    EXPECT_EQ(number.reading, NumberReading::Number) << text;
    EXPECT_DOUBLE_EQ(number.value, value) << text;
    EXPECT_TRUE(IsNumericText(Wide(text))) << text;
  }
}

TEST(ReadNumberTest, RefusesATextThatIsNotANumberAsAWhole) {
  for (const char* const text :
       {"",    " ",     "abc",   "12abc", "1e",  "1e+", "e5", ".",   "+",    "-",   "--5",
        "1 2", "1.5.2", "1e5e5", ",5",    "$",   "$$5", "()", "(5",  "5)",   "&",   "&H",
        "&HG", "&O8",   "&17",   "0x10",  "inf", "nan", "5%", "1_2", "$1e5", ".e5", "1e 5"}) {
    EXPECT_EQ(ReadNumber(Wide(text)).reading, NumberReading::NotANumber) << text;
    EXPECT_FALSE(IsNumericText(Wide(text))) << text;
  }
}

TEST(ReadNumberTest, ATextWithANulIsNotANumber) {
  for (const TextView text : {TextView(u"5\0", 2),
                              TextView(u"\0"
                                       u"5",
                                       2),
                              TextView(u"5\0 5", 4)}) {
    EXPECT_EQ(ReadNumber(text).reading, NumberReading::NotANumber);
    EXPECT_FALSE(IsNumericText(text));
  }
}

TEST(ReadNumberTest, OnlyAsciiDigitsAreDigits) {
  for (const char16_t digit : {u'\u0660', u'\u0966', u'\uFF15', u'\u00B2', u'\u00BD'}) {
    EXPECT_FALSE(IsNumericText(Text(1, digit)));
    EXPECT_EQ(ReadNumber(Text(1, digit)).reading, NumberReading::NotANumber);
  }
  EXPECT_TRUE(IsNumericText(u"\u00A05\u2003"));
}

TEST(ReadNumberTest, ReadsLongTextsOfDigits) {
  for (const std::size_t count : {30U, 60U, 200U, 300U}) {
    const auto number = ReadNumber(Text(count, u'7'));
    EXPECT_EQ(number.reading, NumberReading::Number);
    EXPECT_NEAR(number.value / std::pow(10.0, static_cast<double>(count)), 7.0 / 9, 1e-12);
    EXPECT_DOUBLE_EQ(ReadNumber(Text(count, u'0') + u"5").value, 5);
  }
}

TEST(ReadNumberTest, ANumberTooLargeForADoubleOverflows) {
  for (const Text& text : {Text(u"1e309"), Text(u"-1e309"), Text(u"1e400"), Text(u"1e999999999"),
                           Text(u"1e99999999999999999999"), Text(400, u'9')}) {
    EXPECT_EQ(ReadNumber(text).reading, NumberReading::Overflow);
    EXPECT_TRUE(IsNumericText(text));
  }
}

}  // namespace
}  // namespace latchkey::test
