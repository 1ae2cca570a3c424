#include "platform/linux/root_volume.h"

#include <gtest/gtest.h>

namespace latchkey::platform {
namespace {

// One formula of the seed adds the number, shifted left by 3 bits, to the tick count in 32 bits.
TEST(RootVolumeTest, TheIdentificationNumberLeavesRoomForTheTickCount) {
  const auto volume = RootVolume();
  ASSERT_TRUE(volume);
  EXPECT_LE(volume->serialNumber, 0x00FFFFFFU);
  EXPECT_NE(volume->fileSystemName, "");
}

TEST(RootVolumeTest, FreeBytesAreEveryonesAndAvailableBytesTheUsers) {
  struct statvfs status {};
  status.f_frsize = 4096;
  status.f_bsize = 65536;
  status.f_blocks = 1000;
  status.f_bfree = 300;
  status.f_bavail = 250;
  const DiskSpace space = SpaceOf(status);
  EXPECT_EQ(space.availableBytes, 250U * 4096);
  EXPECT_EQ(space.freeBytes, 300U * 4096);
  EXPECT_EQ(space.totalBytes, 1000U * 4096);
}

}  // namespace
}  // namespace latchkey::platform
