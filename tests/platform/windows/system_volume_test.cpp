// The figures of the system volume, compared with those of the system's wide functions.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/system_probe.h"

namespace latchkey::test {
namespace {

constexpr const char* kSystemRoot = "C:\\";
constexpr const wchar_t* kWideSystemRoot = L"C:\\";

TEST(SystemVolumeTest, TheIdentificationNumberIsThatOfTheVolume) {
  DWORD serialNumber = 0;
  ASSERT_TRUE(GetVolumeInformationW(kWideSystemRoot, nullptr, 0, &serialNumber, nullptr, nullptr,
                                    nullptr, 0));
  const auto volume = platform::MachineProbe().GetVolumeInformationA(kSystemRoot);
  ASSERT_TRUE(volume);
  EXPECT_EQ(volume->serialNumber, serialNumber);
}

// Free space changes at any time, total sizes do not.
TEST(SystemVolumeTest, TheSizesAreThoseOfTheVolume) {
  ULARGE_INTEGER total{};
  ASSERT_TRUE(GetDiskFreeSpaceExW(kWideSystemRoot, nullptr, &total, nullptr));
  const auto space = platform::MachineProbe().GetDiskFreeSpaceExA(kSystemRoot);
  ASSERT_TRUE(space);
  EXPECT_EQ(space->totalBytes, total.QuadPart);

  DWORD sectorsPerCluster = 0;
  DWORD bytesPerSector = 0;
  DWORD freeClusters = 0;
  DWORD totalClusters = 0;
  ASSERT_TRUE(GetDiskFreeSpaceW(kWideSystemRoot, &sectorsPerCluster, &bytesPerSector, &freeClusters,
                                &totalClusters));
  const auto clusters = platform::MachineProbe().GetDiskFreeSpaceA(kSystemRoot);
  ASSERT_TRUE(clusters);
  EXPECT_EQ(clusters->sectorsPerCluster, sectorsPerCluster);
  EXPECT_EQ(clusters->bytesPerSector, bytesPerSector);
  EXPECT_EQ(clusters->totalNumberOfClusters, totalClusters);
}

}  // namespace
}  // namespace latchkey::test
