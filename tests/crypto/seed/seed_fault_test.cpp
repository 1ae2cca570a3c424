// Readings for which no seed can be computed: the fault reaches BuildSeedText's caller.
#include <gtest/gtest.h>

#include "crypto/seed/seed_text.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class SeedFaultTest : public WatchedModule {
 protected:
  std::int32_t FaultFor(std::int32_t digit, std::uint32_t ticks = 1'234'567) {
    probe.SetTicks({ticks, static_cast<std::uint32_t>(digit)});
    return FaultOf([] { return BuildSeedText(); });
  }

  void TakeDriveSpaceAway() {
    probe.space.clear();
    probe.clusters.clear();
  }
};

TEST_F(SeedFaultTest, FaultsAreNotRecorded) {
  probe.windows.clear();
  TakeDriveSpaceAway();
  EXPECT_NE(FaultFor(1), kNoFault);
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(SeedFaultTest, DigitSixDividesByTheVolumeFigure) {
  probe.volume.reset();
  EXPECT_EQ(FaultFor(6), 11);
  probe.volume = {"", 0, ""};
  EXPECT_EQ(FaultFor(6), 11);
}

TEST_F(SeedFaultTest, DigitEightAddsVolumeNumberAndTicksIn32Bits) {
  probe.volume = {"", 0x0FFFFFFF, ""};  // shifted: 7FFFFFF8
  EXPECT_EQ(FaultFor(8, 7), kNoFault);
  EXPECT_EQ(FaultFor(8, 8), 6);
  probe.volume = {"", 0x10000000, ""};  // shifted: 80000000
  EXPECT_EQ(FaultFor(8, 0), kNoFault);
  EXPECT_EQ(FaultFor(8, static_cast<std::uint32_t>(-1)), 6);
}

TEST_F(SeedFaultTest, TheSameReadingsAreNoFaultForTheOtherDigits) {
  probe.volume = {"", 0x0FFFFFFF, ""};
  EXPECT_EQ(FaultFor(4, 8), kNoFault);
  EXPECT_EQ(FaultFor(6, 8), kNoFault);
  EXPECT_EQ(FaultFor(-1, 8), kNoFault);
}

TEST_F(SeedFaultTest, DigitNineFailsForNegativeUsedSpace) {
  probe.space["C:\\"] = {0, 1000, 1001};
  EXPECT_EQ(FaultFor(9), 5);
  EXPECT_EQ(FaultFor(8), kNoFault);
}

TEST_F(SeedFaultTest, DigitOneFailsForANegativeShareOfTheTicks) {
  TakeDriveSpaceAway();
  EXPECT_EQ(FaultFor(1, static_cast<std::uint32_t>(-100)), 5);
  EXPECT_EQ(FaultFor(1, 100), kNoFault);
}

TEST_F(SeedFaultTest, DigitZeroOverflowsTheRangeOfCurrency) {
  probe.space["C:\\"] = {0, 922'337'203'685'477, 0};
  EXPECT_EQ(FaultFor(0), 6);
  EXPECT_EQ(FaultFor(4), kNoFault);
}

TEST_F(SeedFaultTest, WithoutDriveSpaceNoWindowsIsAFault) {
  probe.windows.clear();
  EXPECT_EQ(FaultFor(4), kNoFault);
  TakeDriveSpaceAway();
  EXPECT_EQ(FaultFor(4), 11);
}

TEST_F(SeedFaultTest, WithoutDriveSpaceAHandleSumOfZeroIsAFault) {
  probe.windows = {{5}, {static_cast<std::uintptr_t>(0xFFFFFFFBU)}};  // 5 and -5
  TakeDriveSpaceAway();
  EXPECT_EQ(FaultFor(4), 11);
}

TEST_F(SeedFaultTest, WithoutDriveSpaceTheHandleSumMustFit32Bits) {
  probe.windows = {{0x7FFFFFFF}, {1}};
  TakeDriveSpaceAway();
  EXPECT_EQ(FaultFor(4), 6);
}

// The only quotient of two 32-bit numbers that does not fit 32 bits.
TEST_F(SeedFaultTest, TheLowestTickCountDividedByMinusOneOverflows) {
  probe.windows = {{static_cast<std::uintptr_t>(0xFFFFFFFFU)}};
  TakeDriveSpaceAway();
  EXPECT_EQ(FaultFor(4, 0x80000000U), 6);
  EXPECT_EQ(FaultFor(4, 0x80000001U), kNoFault);
}

TEST_F(SeedFaultTest, AFaultOfAReadingReachesTheCaller) {
  for (const char* member : {"GetTickCount", "EnumWindows", "GetVolumeInformationA", "Now"}) {
    probe.faults = {{member, FaultNumber::OutOfMemory}};
    EXPECT_EQ(FaultFor(4), 7) << member;
  }
}

TEST_F(SeedFaultTest, AVolumeFigureTooLargeForADoubleOverflows) {
  probe.volume = {std::string(310, '9'), 0x1234, ""};
  EXPECT_EQ(FaultFor(4), 6);
}

}  // namespace
}  // namespace latchkey::test
