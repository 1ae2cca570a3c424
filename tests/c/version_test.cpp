// Version and status texts.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "latchkey.h"

namespace latchkey::test {
namespace {

TEST(CStatusTextTest, EveryStatusHasItsOwnText) {
  std::set<std::string> texts;
  for (std::int32_t status = 0; status < LATCHKEY_STATUS_COUNT; ++status) {
    EXPECT_TRUE(texts.insert(latchkey_status_text(status)).second) << status;
  }
  EXPECT_EQ(texts.count("Unknown status"), 0U);
}

TEST(CStatusTextTest, OtherNumbersAreUnknown) {
  for (const std::int32_t number : {-1, static_cast<std::int32_t>(LATCHKEY_STATUS_COUNT)}) {
    EXPECT_STREQ(latchkey_status_text(number), "Unknown status");
  }
}

TEST(CVersionTest, IsThreeNumbers) { EXPECT_STREQ(latchkey_version(), LATCHKEY_VERSION); }

}  // namespace
}  // namespace latchkey::test
