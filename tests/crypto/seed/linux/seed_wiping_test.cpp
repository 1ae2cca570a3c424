// BuildSeedText must wipe its readings and the seed from memory.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>

#include "crypto/seed/seed_text.h"
#include "tests/support/bytes.h"
#include "tests/support/fake_probe.h"
#include "tests/support/freed_memory.h"
#include "tests/support/linux/stack_residue.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

// Free: 250,000 bytes, used: 750,000; the volume figure is 1372802.
void SetKnownReadings(FakeProbe& probe) {
  probe.windows = {{16}, {32, "Class", {{64}}}};
  probe.volume = {"2", 0x1234, "1"};
  probe.space = {{"C:\\", {200'000, 1'000'000, 250'000}}};
}

// In the same order as in BuildSeedText.
struct KeptReadings {
  double volumeFigure = 1'372'802;
  std::int64_t free = std::int64_t{250'000} * 10'000;
  std::int64_t used = std::int64_t{750'000} * 10'000;
};

TEST(SeedWipingTest, TheReadingsAreWipedFromTheStack) {
  const auto readings = std::bit_cast<std::array<std::uint8_t, 24>>(KeptReadings{});
  FakeProbe probe;
  SetKnownReadings(probe);
  const auto run = [&] {
    ModuleScope scope;
    scope.Services().probe = &probe;
    probe.SetTicks({1'234'567, 4});
    static_cast<void>(BuildSeedText());
  };
  EXPECT_EQ(StackCopiesOf(readings, run), 0U);
  // Without the wipe, the search finds the readings.
  EXPECT_NE(StackCopiesOf(readings,
                          [&] {
                            auto left = readings;
                            asm volatile("" : : "r"(left.data()) : "memory");
                          }),
            0U);
}

TEST(SeedWipingTest, TheSeedIsWipedBeforeItsMemoryIsFreed) {
  FakeProbe probe;
  SetKnownReadings(probe);
  ModuleScope scope;
  scope.Services().probe = &probe;
  // (Now + ticks + volume id) / pi = 417574.02841549, in text and in the digits of its readers.
  const std::array forms{AsText(BytesOf("417574.02841549")), AsText(BytesOf("41757402841549")),
                         BytesOf("41757402841549")};
  for (const Bytes& form : forms) {
    probe.SetTicks({1'234'567, 4});
    const FreedMemory freed(form);
    const Text result = BuildSeedText();
    EXPECT_EQ(freed.BlocksWithSecret(), 0U) << Hex(form);
    EXPECT_EQ(result, u"4175740284154941757402841549");
  }
}

}  // namespace
}  // namespace latchkey::test
