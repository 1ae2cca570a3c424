#include "platform/linux/date_text.h"

#include <gtest/gtest.h>

namespace latchkey::test {
namespace {

using platform::TextOfDate;

TEST(TextOfDateTest, TheLastSecondOfTheCalendarHasText) {
  EXPECT_EQ(TextOfDate(2'958'465 + 86'399.0 / 86'400), "12/31/9999 11:59:59 PM");
}

TEST(TextOfDateTest, TimesRoundedBeyondTheCalendarHaveNoText) {
  EXPECT_EQ(TextOfDate(2'958'465.9999999), std::nullopt);
}

}  // namespace
}  // namespace latchkey::test
