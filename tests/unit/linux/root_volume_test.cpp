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

}  // namespace
}  // namespace latchkey::platform
