#include "crypto/seed/drive_space.h"

#include <gtest/gtest.h>

#include "crypto/crypto_state.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

constexpr std::uint64_t kLargestByteCount = 922'337'203'685'477;  // as Currency

// Queries drive C, and drive D if a test sets values for it.
class DriveSpaceTest : public WatchedModule {
 protected:
  bool Get(const char* root = "C:\\") { return GetDriveSpace(root, info); }

  void CountClustersOnly(const platform::DiskClusters& drive) {
    probe.space.clear();
    probe.clusters["C:\\"] = drive;
  }

  DriveSpaceInfo info;
};

TEST_F(DriveSpaceTest, ReturnsTheByteCountsOfTheDrive) {
  probe.space["C:\\"] = {300, 1000, 400};
  EXPECT_TRUE(Get());
  EXPECT_EQ(info.AvailableBytes.ToDouble(), 300);
  EXPECT_EQ(info.TotalBytes.ToDouble(), 1000);
  EXPECT_EQ(info.FreeBytes.ToDouble(), 400);
  EXPECT_EQ(info.UsedBytes.ToDouble(), 600);
  EXPECT_EQ(probe.CountCalls("GetDiskFreeSpaceA"), 0U);
}

TEST_F(DriveSpaceTest, AlwaysTriesTheByteCountsOnDriveC) {
  probe.space["D:\\"] = {1, 2, 1};
  EXPECT_TRUE(Get("D:\\"));
  EXPECT_EQ(probe.calls,
            (std::vector<std::string>{"GetDiskFreeSpaceExA C:\\", "GetDiskFreeSpaceExA D:\\"}));
  EXPECT_EQ(info.TotalBytes.ToDouble(), 2);
}

TEST_F(DriveSpaceTest, ADriveThatCannotBeQueriedIsNotAFault) {
  info.TotalBytes = Currency::FromWhole(7);
  info.SectorsPerCluster = 8;
  EXPECT_FALSE(Get("D:\\"));
  EXPECT_EQ(info.TotalBytes.ToDouble(), 7);
  EXPECT_EQ(info.SectorsPerCluster, 8);
  EXPECT_EQ(probe.CountCalls("GetDiskFreeSpaceA "), 0U);
  EXPECT_TRUE(probe.warnings.empty());
}

TEST_F(DriveSpaceTest, WithoutByteCountsOnDriveCClustersAreCounted) {
  CountClustersOnly({});
  probe.space["D:\\"] = {1, 2, 1};
  probe.clusters["D:\\"] = {8, 512, 100, 250};
  EXPECT_TRUE(Get("D:\\"));
  EXPECT_EQ(info.SectorsPerCluster, 8);
  EXPECT_EQ(info.BytesPerSector, 512);
  EXPECT_EQ(info.NumberOfFreeClusters, 100);
  EXPECT_EQ(info.TotalNumberOfClusters, 250);
  EXPECT_EQ(info.TotalBytes.ToDouble(), 1'024'000);
  EXPECT_EQ(info.FreeBytes.ToDouble(), 409'600);
  EXPECT_EQ(info.AvailableBytes.ToDouble(), 409'600);
  EXPECT_EQ(info.UsedBytes.ToDouble(), 614'400);
}

TEST_F(DriveSpaceTest, ReturnsFalseWithoutAMessageWhenNeitherQuerySucceeds) {
  probe.space.clear();
  probe.clusters.clear();
  EXPECT_FALSE(Get());
  EXPECT_TRUE(probe.warnings.empty());
}

TEST_F(DriveSpaceTest, ClustersAreMultipliedIn32Bits) {
  CountClustersOnly({1, 1, 0, 2'147'483'647});
  EXPECT_TRUE(Get());
  EXPECT_EQ(info.TotalBytes.ToDouble(), 2147483647.0);
  CountClustersOnly({2, 512, 0, 2'097'152});  // one more byte
  EXPECT_FALSE(Get());
  EXPECT_EQ(probe.warnings.size(), 1U);
}

TEST_F(DriveSpaceTest, AFaultShowsAMessageThatNamesTheDrive) {
  CountClustersOnly({64, 4096, 100'000, 1'000'000});
  probe.clusters["D:\\"] = probe.clusters["C:\\"];
  EXPECT_FALSE(Get());
  EXPECT_FALSE(Get("D:\\"));
  EXPECT_EQ(probe.warnings,
            (std::vector<Text>{u"Drive information for drive C:\\ has caused an error.",
                               u"Drive information for drive D:\\ has caused an error."}));
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(DriveSpaceTest, ByteCountsMustFitTheRangeOfCurrency) {
  probe.space["C:\\"] = {kLargestByteCount, kLargestByteCount, kLargestByteCount};
  EXPECT_TRUE(Get());
  probe.space["C:\\"] = {0, kLargestByteCount + 1, 0};
  EXPECT_FALSE(Get());
  EXPECT_EQ(probe.warnings.size(), 1U);
}

TEST_F(DriveSpaceTest, TheLargestByteCountsAreNegative) {
  constexpr std::uint64_t kLast = UINT64_MAX;
  probe.space["C:\\"] = {kLast - 2, kLast - 9, kLast - kLargestByteCount + 1};
  EXPECT_TRUE(Get());
  EXPECT_EQ(info.AvailableBytes.ToDouble(), -3);
  EXPECT_EQ(info.TotalBytes.ToDouble(), -10);
  EXPECT_EQ(info.FreeBytes, Currency::FromWhole(-922'337'203'685'477));
  EXPECT_EQ(info.UsedBytes, Currency::FromWhole(922'337'203'685'467));
  EXPECT_TRUE(probe.warnings.empty());
  probe.space["C:\\"] = {0, kLast - kLargestByteCount, 0};
  EXPECT_FALSE(Get());
  EXPECT_EQ(probe.warnings.size(), 1U);
}

TEST_F(DriveSpaceTest, AFaultOfTheClusterQueryShowsTheMessageToo) {
  CountClustersOnly({8, 512, 100, 250});
  probe.faults["GetDiskFreeSpaceA"] = FaultNumber::InvalidProcedureCall;
  EXPECT_FALSE(Get());
  EXPECT_EQ(probe.warnings.size(), 1U);
}

TEST_F(DriveSpaceTest, StoresTheLastDriveForTheThread) {
  probe.space["C:\\"] = {300, 1000, 400};
  Get();
  EXPECT_EQ(ThisThreadCrypto().lastDriveTotal, 1000);
  EXPECT_EQ(ThisThreadCrypto().lastDriveFree, 400);
  EXPECT_EQ(ThisThreadCrypto().lastDriveUsed, 600);
}

TEST_F(DriveSpaceTest, ADriveThatCannotBeQueriedStoresTheCallersValues) {
  info.TotalBytes = Currency::FromWhole(7);
  Get("D:\\");
  EXPECT_EQ(ThisThreadCrypto().lastDriveTotal, 7);
  EXPECT_EQ(ThisThreadCrypto().lastDriveFree, 0);
}

TEST_F(DriveSpaceTest, AFaultKeepsTheLastDrive) {
  Get();
  CountClustersOnly({64, 4096, 100'000, 1'000'000});
  Get();
  EXPECT_EQ(ThisThreadCrypto().lastDriveTotal, 1000);
}

TEST_F(DriveSpaceTest, AvailabilityIsWhetherDriveCAnswers) {
  EXPECT_TRUE(DiskFreeSpaceExAvailable());
  probe.space.clear();
  probe.space["D:\\"] = {1, 2, 1};
  EXPECT_FALSE(DiskFreeSpaceExAvailable());
  EXPECT_EQ(probe.CountCalls("GetDiskFreeSpaceExA C:\\"), 2U);
}

TEST_F(DriveSpaceTest, AFaultOfTheProbeMeansNotAvailable) {
  probe.faults["GetDiskFreeSpaceExA"] = FaultNumber::InvalidProcedureCall;
  EXPECT_FALSE(DiskFreeSpaceExAvailable());
  EXPECT_TRUE(Get());  // by clusters
  EXPECT_EQ(info.TotalBytes.ToDouble(), 1'024'000);
  EXPECT_TRUE(probe.warnings.empty());
}

}  // namespace
}  // namespace latchkey::test
