// The machine's own answers, as far as they are the same on any machine.
#include "platform/system_probe.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <ctime>

#include "platform/connectivity.h"

namespace latchkey::test {
namespace {

using platform::SystemProbe;

constexpr const char* kSystemRoot = "C:\\";

class SystemProbeTest : public ::testing::Test {
 protected:
  SystemProbe& probe = platform::MachineProbe();
};

TEST_F(SystemProbeTest, TicksIncreaseAlsoWhenTheyWrap) {
  const std::uint32_t start = probe.GetTickCount();
  std::uint32_t last = start;
  while (last - start < 20) {
    const std::uint32_t next = probe.GetTickCount();
    ASSERT_LT(next - last, 0x80000000U);
    last = next;
  }
}

TEST_F(SystemProbeTest, NowIsTheDateInSomeTimeZone) {
  constexpr double kUnixEpoch = 25569;
  const double universal = kUnixEpoch + static_cast<double>(std::time(nullptr)) / 86400;
  EXPECT_LT(std::fabs(probe.Now() - universal), 0.75);
}

TEST_F(SystemProbeTest, NowCountsMilliseconds) {
  const auto milliseconds = [](double days) { return std::llround(days * 86'400'000); };
  const std::uint32_t start = probe.GetTickCount();
  bool betweenSeconds = false;
  while (!betweenSeconds && probe.GetTickCount() - start < 5000) {
    betweenSeconds = milliseconds(probe.Now()) % 1000 != 0;
  }
  EXPECT_TRUE(betweenSeconds);
}

TEST_F(SystemProbeTest, TheSystemVolumeHasAFileSystem) {
  const auto volume = probe.GetVolumeInformationA(kSystemRoot);
  ASSERT_TRUE(volume);
  EXPECT_FALSE(volume->fileSystemName.empty());
  EXPECT_EQ(volume->fileSystemName.find('\0'), std::string::npos);
  const auto again = probe.GetVolumeInformationA(kSystemRoot);
  ASSERT_TRUE(again);
  EXPECT_EQ(volume->serialNumber, again->serialNumber);
}

TEST_F(SystemProbeTest, TheSpaceOfTheSystemVolumeIsConsistent) {
  const auto space = probe.GetDiskFreeSpaceExA(kSystemRoot);
  ASSERT_TRUE(space);
  EXPECT_GT(space->totalBytes, 0U);
  EXPECT_LE(space->freeBytes, space->totalBytes);
  EXPECT_LE(space->availableBytes, space->freeBytes);
}

TEST_F(SystemProbeTest, TheClustersOfTheSystemVolumeAreConsistent) {
  const auto clusters = probe.GetDiskFreeSpaceA(kSystemRoot);
  ASSERT_TRUE(clusters);
  EXPECT_GT(clusters->sectorsPerCluster, 0U);
  EXPECT_GT(clusters->bytesPerSector, 0U);
  EXPECT_LE(clusters->numberOfFreeClusters, clusters->totalNumberOfClusters);
}

TEST_F(SystemProbeTest, WindowsHaveHandles) {
  probe.EnumWindows([this](SystemProbe::WindowHandle window) {
    EXPECT_NE(window, 0U);
    probe.EnumChildWindows(window, [](SystemProbe::WindowHandle child) { EXPECT_NE(child, 0U); });
  });
}

TEST_F(SystemProbeTest, AnUnknownWindowHasNoClassAndCannotBeClosed) {
  constexpr SystemProbe::WindowHandle kNoWindow = 0x7FFFFFF0;
  std::array<char, 8> buffer{};
  EXPECT_EQ(probe.GetClassNameA(kNoWindow, buffer), 0);
  EXPECT_FALSE(probe.CloseHandle(kNoWindow));
}

// The answer depends on the machine, but flags and connection must agree on all machines.
TEST(ConnectivityTest, TheFlagsDescribeTheConnection) {
  constexpr std::uint32_t kUntouched = 0xFFFFFFFF;
  std::uint32_t flags = kUntouched;
  const bool connected = platform::SystemConnectivity().InternetGetConnectedState(&flags, 0);
  EXPECT_NE(flags, kUntouched);
  if (connected) {
    EXPECT_NE(flags, 0U);
  }
  std::uint32_t again = 0;
  EXPECT_EQ(platform::SystemConnectivity().InternetGetConnectedState(&again, 0), connected);
  EXPECT_EQ(again, flags);
}

}  // namespace
}  // namespace latchkey::test
