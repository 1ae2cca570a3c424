// The text that BuildSeedText makes from the machine's readings.
#include "crypto/seed/seed_text.h"

#include <gtest/gtest.h>

#include "tests/support/code_pages.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

// Readings that affect every formula: window count 3 and handle sum 112; volume identification
// number 1234 (hexadecimal) shifted to 37280, so that the volume figure of a file system named 1
// and a volume named 2 is 1372802; 250,000 bytes free and 750,000 used.
class SeedTextTest : public WatchedModule {
 protected:
  SeedTextTest() {
    probe.now = 40000.5;
    probe.windows = {{16}, {32, "Class", {{64}}}};
    probe.volume = {"2", 0x1234, "1"};
    probe.space = {{"C:\\", {200'000, 1'000'000, 250'000}}};
  }

  // The second reading of the tick counter gives the digit.
  Text SeedFor(std::int32_t digit, std::uint32_t ticks = 1'234'567) {
    probe.SetTicks({ticks, static_cast<std::uint32_t>(digit)});
    return BuildSeedText();
  }
};

struct Formula {
  std::int32_t digit;
  std::u16string digits;  // of the seed's decimal text, computed outside this program
};

class SeedFormulaTest : public SeedTextTest, public testing::WithParamInterface<Formula> {};

TEST_P(SeedFormulaTest, GivesTheDigitsOfItsSeedTwice) {
  const Text& digits = GetParam().digits;
  EXPECT_EQ(SeedFor(GetParam().digit), digits + digits);
}

INSTANTIATE_TEST_SUITE_P(
    EachDigit, SeedFormulaTest,
    testing::Values(
        // (Now + ticks + used) / pi = 644439.850496402
        Formula{0, u"644439850496402"},
        // Now + pi + root of free + window count = 40506.6415926536
        Formula{1, u"405066415926536"},
        // root of Now + ticks + pi + handle sum = 1234882.14284265
        Formula{2, u"123488214284265"},
        // (Now + volume figure + pi + volume id) / 0.05 = 29001712.8318531
        Formula{3, u"290017128318531"},
        // (Now + ticks + volume id) / pi = 417574.02841549
        Formula{4, u"41757402841549"},
        // (ticks + root of (volume id + volume figure)) / 0.05 = 24715089.3747286
        Formula{5, u"247150893747286"},
        // (ticks + pi + volume id + free) / (volume figure / pi) = 3.48268229847796
        Formula{6, u"348268229847796"},
        // (volume id + pi + handle sum) / 0.75 * window count = 149580.566370614
        Formula{7, u"149580566370614"},
        // (volume id + ticks + used) / 0.75 = 2695796
        Formula{8, u"2695796"},
        // (free + root of used + volume id) * pi = 905237.436557738
        Formula{9, u"905237436557738"},
        // (Now + ticks + volume id) / (pi + volume figure) = 0.95559628985514
        Formula{-1, u"095559628985514"}, Formula{-9999, u"095559628985514"}),
    [](const auto& formula) {
      const std::int32_t digit = formula.param.digit;
      return digit < 0 ? "Minus" + std::to_string(-digit) : "Digit" + std::to_string(digit);
    });

TEST_F(SeedTextTest, ReadsTheMachineInOrder) {
  SeedFor(4);
  const std::vector<std::string> expected{"GetTickCount",
                                          "GetTickCount",
                                          "EnumWindows",
                                          "GetWindowTextA 16",
                                          "EnumChildWindows 16",
                                          "CloseHandle 16",
                                          "GetWindowTextA 32",
                                          "EnumChildWindows 32",
                                          "GetClassNameA 64",
                                          "CloseHandle 64",
                                          "CloseHandle 32",
                                          "GetVolumeInformationA C:\\",
                                          "GetDiskFreeSpaceExA C:\\",
                                          "GetDiskFreeSpaceExA C:\\",
                                          "Now"};
  EXPECT_EQ(probe.calls, expected);
}

TEST_F(SeedTextTest, NamesOfLettersCountAsTheirCodes) {
  probe.volume = {"DATA", 0x1234, "NTFS"};
  // NTFS, 37280 and DATA make 788470833728068658465: (... + that) / 0.05 = 1.57694166745614E+22
  EXPECT_EQ(SeedFor(3), u"1576941667456142215769416674561422");
}

TEST_F(SeedTextTest, ANegativeVolumeNumberLosesItsSignInTheFigureOnly) {
  probe.volume = {"", 0x1FFFFFFF, ""};  // shifted: -8, so that the figure is 8
  // (ticks + root of (-8 + 8)) / 0.05
  EXPECT_EQ(SeedFor(5), u"2469134024691340");
}

TEST_F(SeedTextTest, BytesOfANameCountAsTheirCodes) {
  scope.Services().codePage = &DoubleBytePage();
  probe.volume = {"\x82\xE0", 0, ""};
  // The figure is 0130224: (ticks + root of (0 + 130224)) / 0.05 = 24698557.3125192
  EXPECT_EQ(SeedFor(5), u"246985573125192246985573125192");
}

TEST_F(SeedTextTest, WithoutAVolumeItsNumberAndFigureAreZero) {
  probe.volume.reset();
  // (Now + ticks + 0) / pi = 405707.435858559
  EXPECT_EQ(SeedFor(4), u"405707435858559405707435858559");
  // (Now + 0 + pi + 0) / 0.05 = 800072.831853072
  EXPECT_EQ(SeedFor(3), u"800072831853072800072831853072");
}

TEST_F(SeedTextTest, TicksAreReadAsASignedNumber) {
  // (volume id + ticks + used) / 0.75 with ticks -500000 = 383040
  EXPECT_EQ(SeedFor(8, static_cast<std::uint32_t>(-500'000)), u"383040383040");
}

TEST_F(SeedTextTest, TheSignOfANegativeSeedIsLost) {
  probe.windows = {{16}, {static_cast<std::uintptr_t>(0xFFFF0000U)}};  // 16 - 65536
  // (37280 + pi - 65520) / 0.75 * 2 = -75298.2890862571
  EXPECT_EQ(SeedFor(7), u"752982890862571752982890862571");
}

TEST_F(SeedTextTest, WithoutDriveSpaceTheTicksAreDivided) {
  probe.space.clear();
  probe.clusters.clear();
  // free is 1234567 \ 3 and used 1234567 \ 112: (411522 + root of 11022 + 37280) * pi.
  EXPECT_EQ(SeedFor(9), u"141028288842026141028288842026");
}

TEST_F(SeedTextTest, AFaultOfTheDriveShowsItsMessageAndTheTicksAreDivided) {
  probe.space.clear();
  probe.clusters["C:\\"] = {64, 4096, 100'000, 1'000'000};  // more than 32 bits of bytes
  EXPECT_EQ(SeedFor(9), u"141028288842026141028288842026");
  EXPECT_EQ(probe.warnings.size(), 1U);
}

TEST_F(SeedTextTest, QuotientsOfNegativeTicksAreTruncatedTowardZero) {
  probe.space.clear();
  probe.clusters.clear();
  // (-700000 + pi + 37280 + (-700000 \ 3)) / (1372802 / pi) = -2.05056785494166
  EXPECT_EQ(SeedFor(6, static_cast<std::uint32_t>(-700'000)), u"205056785494166205056785494166");
}

}  // namespace
}  // namespace latchkey::test
