#include "platform/linux/root_volume.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "crypto/seed/seed_text.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

using platform::kLargestVolumeNumber;
using platform::VolumeNumber;

// Identification numbers of file systems, including those that a fold or a mask turns into 0.
constexpr std::array<std::uint64_t, 9> kFileSystemIds{
    0, 1, 123, 124, 0xFF000000, 0x100000001, 0xFFFFFFFFU, 0x8000000000000000, 0xFFFFFFFFFFFFFFFF};

TEST(RootVolumeTest, TheIdentificationNumberIsSmallAndNeverZero) {
  for (const std::uint64_t id : kFileSystemIds) {
    EXPECT_GE(VolumeNumber(id), 1U) << id;
    EXPECT_LE(VolumeNumber(id), kLargestVolumeNumber) << id;
  }
  for (std::uint64_t id = 0; id < 1000; ++id) {
    EXPECT_GE(VolumeNumber(id), 1U) << id;
    EXPECT_LE(VolumeNumber(id), kLargestVolumeNumber) << id;
  }
}

TEST(RootVolumeTest, TheNumberDependsOnBothHalvesOfTheFileSystemsNumber) {
  EXPECT_NE(VolumeNumber(5), VolumeNumber(6));
  EXPECT_NE(VolumeNumber(std::uint64_t{5} << 32), VolumeNumber(std::uint64_t{6} << 32));
}

TEST(RootVolumeTest, ThisMachinesVolumeHasSuchANumberAndAFileSystem) {
  const auto volume = platform::RootVolume();
  ASSERT_TRUE(volume);
  EXPECT_GE(volume->serialNumber, 1U);
  EXPECT_LE(volume->serialNumber, kLargestVolumeNumber);
  EXPECT_THAT(volume->fileSystemName, ::testing::MatchesRegex("[0-9]+"));
}

TEST(RootVolumeTest, FreeBytesAreForAllUsersAndAvailableBytesForThisOne) {
  struct statvfs status {};
  status.f_frsize = 4096;
  status.f_bsize = 65536;
  status.f_blocks = 1000;
  status.f_bfree = 300;
  status.f_bavail = 250;
  const platform::DiskSpace space = platform::SpaceOf(status);
  EXPECT_EQ(space.availableBytes, 250U * 4096);
  EXPECT_EQ(space.freeBytes, 300U * 4096);
  EXPECT_EQ(space.totalBytes, 1000U * 4096);
}

// The seed on a machine with each of these numbers.
class RootVolumeSeedTest : public WatchedModule {
 protected:
  std::int32_t FaultFor(std::uint32_t number, std::int32_t digit, std::uint32_t ticks,
                        const std::string& fileSystem = {}) {
    probe.volume = {"", number, fileSystem};
    probe.SetTicks({ticks, static_cast<std::uint32_t>(digit)});
    return FaultOf([] { return BuildSeedText(); });
  }
};

constexpr std::uint32_t kLastPositiveTick = 0x7FFFFFFF;
constexpr std::array kNumbers{1U, kLargestVolumeNumber};

TEST_F(RootVolumeSeedTest, OverflowsForLessThanASecondOfTheTickCount) {
  for (const std::uint32_t number : kNumbers) {
    constexpr std::uint32_t kSecond = 1000;
    EXPECT_EQ(FaultFor(number, 8, kLastPositiveTick - kSecond), kNoFault) << number;
    EXPECT_EQ(FaultFor(number, 8, kLastPositiveTick - 8 * number), kNoFault) << number;
    EXPECT_EQ(FaultFor(number, 8, kLastPositiveTick), 6) << number;
    EXPECT_EQ(FaultFor(number, 8, kLastPositiveTick + 1), kNoFault) << number;
    EXPECT_EQ(FaultFor(number, 8, 0xFFFFFFFF), kNoFault) << number;
  }
}

// Digit 6 divides by the digits of the file system's name and the number.
TEST_F(RootVolumeSeedTest, NoOtherFormulaFailsForTheNumberAtAnyTime) {
  for (const std::uint32_t number : kNumbers) {
    for (const std::uint32_t ticks : {0U, kLastPositiveTick, kLastPositiveTick + 1, 0xFFFFFFFFU}) {
      for (std::int32_t digit = -1; digit <= 9; ++digit) {
        if (digit == 8) continue;
        EXPECT_EQ(FaultFor(number, digit, ticks), kNoFault) << digit << " at " << ticks;
      }
    }
  }
}

// The name and the number are read as one number.
TEST_F(RootVolumeSeedTest, NoFormulaFailsForATypeOfFileSystem) {
  constexpr std::uint32_t kTypes[]{0,          0xEF53,     0x58465342, 0x01021994,
                                   0x794C7630, 0x9123683E, 0x2FC12FC1, 0xFFFFFFFF};
  for (const std::uint32_t type : kTypes) {
    for (std::uint32_t number = 1; number <= kLargestVolumeNumber; ++number) {
      for (const std::int32_t digit : {6, 7, 8}) {
        EXPECT_EQ(FaultFor(number, digit, 1, platform::FileSystemName(type)), kNoFault)
            << std::hex << type << std::dec << ", number " << number << ", digit " << digit;
      }
    }
  }
}

}  // namespace
}  // namespace latchkey::test
