#include "latchkey/cls_timer.h"

#include <gtest/gtest.h>

#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

using TimerTest = WatchedModule;

TEST_F(TimerTest, MeasuresFromItsCreation) {
  probe.SetTicks({1000, 1007});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), 7);
}

TEST_F(TimerTest, TheCounterMayWrapPastItsUnsignedMaximum) {
  probe.SetTicks({4294967280U, 16});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), 32);
}

TEST_F(TimerTest, PassingTheSignedMaximumGivesZeroAndNoError) {
  probe.SetTicks({2147483632U, 2147483664U});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), 0);
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(TimerTest, TheDifferenceIsSigned) {
  probe.SetTicks({5, 0x80000006U});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), -2147483647);
}

TEST_F(TimerTest, EveryReadingCountsFromTheSameStartMark) {
  probe.SetTicks({100, 150, 250});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), 50);
  EXPECT_EQ(timer.GetElapsedTime(), 150);
}

TEST_F(TimerTest, StartBeginsAgain) {
  probe.SetTicks({100, 200, 260});
  clsTimer timer;
  timer.Start();
  EXPECT_EQ(timer.GetElapsedTime(), 60);
}

TEST_F(TimerTest, AFaultAtTheStartIsIgnored) {
  probe.faults["GetTickCount"] = FaultNumber::InvalidProcedureCall;
  EXPECT_NO_THROW(clsTimer().Start());
  EXPECT_EQ(probe.CountCalls("GetTickCount"), 2U);
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(TimerTest, AFaultAtAReadingGivesZeroAndKeepsTheStartMark) {
  probe.SetTicks({100, 175});
  clsTimer timer;
  probe.faults["GetTickCount"] = FaultNumber::InvalidProcedureCall;
  EXPECT_EQ(timer.GetElapsedTime(), 0);
  EXPECT_TRUE(journal.All().empty());
  probe.faults.clear();
  EXPECT_EQ(timer.GetElapsedTime(), 75);
}

TEST_F(TimerTest, WorksWithoutARecordEvenWhenItFails) {
  ThisThread().errorRecord.reset();
  probe.SetTicks({100, 175});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), 75);
  probe.faults["GetTickCount"] = FaultNumber::InvalidProcedureCall;
  EXPECT_EQ(timer.GetElapsedTime(), 0);
}

}  // namespace
}  // namespace latchkey::test
