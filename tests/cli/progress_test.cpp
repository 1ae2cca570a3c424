#include "cli/progress.h"

#include <gtest/gtest.h>

#include <optional>

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

TEST(ProgressLineTest, ShowsBytesRateAndTimeLeftWithinTheColumns) {
  EXPECT_EQ(ProgressLine(500'000, 1'000'000, 2, 80),
            " 50% [====================                    ] 500 kB  250 kB/s  0:02 left");
  EXPECT_EQ(ProgressLine(1'500'000'000, std::nullopt, 10, 80), "1.5 GB  150 MB/s");
  EXPECT_EQ(ProgressLine(1000, 7'200'000, 1, 20), "  0% 1.0 kB  1.0 kB/s  1:59:59 left");
  for (unsigned columns = 50; columns < 200; ++columns) {
    EXPECT_LT(ProgressLine(123'456'789, 1'234'567'890, 3, columns).size(), columns);
  }
}

TEST(ProgressLineTest, MoreThanExpectedIsAFullBar) {
  EXPECT_EQ(ProgressLine(20, 10, 1, 60).substr(0, 5), "100% ");
}

}  // namespace
}  // namespace latchkey::test
