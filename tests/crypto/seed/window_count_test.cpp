#include "crypto/seed/window_count.h"

#include <gtest/gtest.h>

#include "crypto/crypto_state.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class WindowCountTest : public WatchedModule {
 protected:
  void CountAll() { CountWindows(count, sum); }

  double count = -1;
  double sum = -1;
};

TEST_F(WindowCountTest, CountsTopLevelWindowsAndTheirDescendants) {
  probe.windows = {{16, "Class", {{20}, {24}}}, {32, "Class", {{36}}}, {48}};
  CountAll();
  EXPECT_EQ(count, 6);
  EXPECT_EQ(sum, 16 + 20 + 24 + 32 + 36 + 48);
}

TEST_F(WindowCountTest, WithoutWindowsBothAreZero) {
  probe.windows.clear();
  CountAll();
  EXPECT_EQ(count, 0);
  EXPECT_EQ(sum, 0);
}

TEST_F(WindowCountTest, ADescendantWithoutAClassNameIsNotCounted) {
  probe.windows = {{16, "Class", {{20, ""}, {24}}}};
  CountAll();
  EXPECT_EQ(count, 2);
  EXPECT_EQ(sum, 40);
}

TEST_F(WindowCountTest, ATopLevelWindowIsCountedWithoutAClassName) {
  probe.windows = {{16, ""}};
  CountAll();
  EXPECT_EQ(count, 1);
  EXPECT_EQ(sum, 16);
}

TEST_F(WindowCountTest, EveryHandleIsClosedOnceEvenIfNotCounted) {
  probe.windows = {{16, "Class", {{20, ""}, {24}}}, {32}};
  CountAll();
  EXPECT_EQ(probe.CountCalls("CloseHandle"), 4U);
  for (const char* call :
       {"CloseHandle 16", "CloseHandle 20", "CloseHandle 24", "CloseHandle 32"}) {
    EXPECT_EQ(probe.CountCalls(call), 1U) << call;
  }
}

TEST_F(WindowCountTest, ATopLevelWindowIsClosedAfterItsDescendants) {
  probe.windows = {{16, "Class", {{20}}}};
  CountAll();
  const std::vector<std::string> expected{"EnumWindows",         "GetWindowTextA 16",
                                          "EnumChildWindows 16", "GetClassNameA 20",
                                          "CloseHandle 20",      "CloseHandle 16"};
  EXPECT_EQ(probe.calls, expected);
}

TEST_F(WindowCountTest, NamesAreReadIntoBuffersOf260Characters) {
  probe.windows = {{16, "Class", {{20}}}};
  CountAll();
  EXPECT_EQ(probe.smallestBuffer, 260U);
}

TEST_F(WindowCountTest, HandlesAreSigned32BitNumbers) {
  probe.windows = {{static_cast<std::uintptr_t>(0xFFFFFFF0U)},
                   {static_cast<std::uintptr_t>(0x80000000U)}};
  CountAll();
  EXPECT_EQ(sum, -16.0 - 2147483648.0);
}

TEST_F(WindowCountTest, TheSumMayExceed32Bits) {
  probe.windows = {{0x7FFFFFFF}, {0x7FFFFFFE}, {0x7FFFFFFD}};
  CountAll();
  EXPECT_EQ(sum, 3 * 2147483646.0);
}

TEST_F(WindowCountTest, EachWalkBeginsAtZero) {
  CountAll();
  CountAll();
  EXPECT_EQ(count, 1);
  EXPECT_EQ(sum, 16);
}

TEST_F(WindowCountTest, StoresTheSumsForTheThread) {
  probe.windows = {{16}, {32}};
  CountAll();
  EXPECT_EQ(ThisThreadCrypto().windowCount, 2);
  EXPECT_EQ(ThisThreadCrypto().windowHandleSum, 48);
}

TEST_F(WindowCountTest, AFaultDuringTheWalkReachesTheCaller) {
  probe.windows = {{16, "Class", {{20}}}};
  probe.faults["GetClassNameA"] = FaultNumber::OutOfMemory;
  EXPECT_EQ(FaultOf([&] { CountAll(); }), 7);
}

}  // namespace
}  // namespace latchkey::test
