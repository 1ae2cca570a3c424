#include "diagnostics/connectivity_probe.h"

#include <gtest/gtest.h>

#include "latchkey/fault.h"
#include "tests/support/fake_connectivity.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class ConnectivityProbeTest : public WatchedModule {
 protected:
  ConnectivityProbeTest() { scope.Services().connectivity = &connectivity; }

  FakeConnectivity connectivity;
  std::int16_t flags = -1;
};

TEST_F(ConnectivityProbeTest, ConnectedGivesTrueAndTheFlags) {
  connectivity.connected = true;
  connectivity.flags = 0x42;
  EXPECT_TRUE(QueryConnectionState(&flags));
  EXPECT_EQ(flags, 0x42);
}

TEST_F(ConnectivityProbeTest, OfflineGivesFalseAndTheFlagsOfTheQuery) {
  connectivity.flags = 0x20;
  EXPECT_FALSE(QueryConnectionState(&flags));
  EXPECT_EQ(flags, 0x20);
  EXPECT_FALSE(QueryConnectionExists());
}

TEST_F(ConnectivityProbeTest, OfflineWithUntouchedFlagsGivesZero) {
  EXPECT_FALSE(QueryConnectionState(&flags));
  EXPECT_EQ(flags, 0);
}

TEST_F(ConnectivityProbeTest, BothQueriesGiveTheSameAnswer) {
  for (const bool connected : {false, true}) {
    connectivity.connected = connected;
    EXPECT_EQ(QueryConnectionExists(), QueryConnectionState(&flags));
  }
}

TEST_F(ConnectivityProbeTest, QueriesOnceWithClearFlagsAndReservedZero) {
  connectivity.flagsOnEntry = 1;
  connectivity.reserved = 1;
  QueryConnectionExists();
  EXPECT_EQ(connectivity.calls, 1);
  EXPECT_EQ(connectivity.flagsOnEntry, 0U);
  EXPECT_EQ(connectivity.reserved, 0U);
}

TEST_F(ConnectivityProbeTest, BeingOfflineIsNotAFailure) {
  QueryConnectionState(&flags);
  QueryConnectionExists();
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ConnectivityProbeTest, FlagsFitUpToTheLimitsOfAnInteger) {
  connectivity.connected = true;
  connectivity.flags = 0x7FFF;
  EXPECT_TRUE(QueryConnectionState(&flags));
  EXPECT_EQ(flags, 32767);
  connectivity.flags = 0xFFFF8000;
  EXPECT_TRUE(QueryConnectionState(&flags));
  EXPECT_EQ(flags, -32768);
}

TEST_F(ConnectivityProbeTest, FlagsThatDoNotFitAreARunTimeFailure) {
  connectivity.connected = true;
  for (const std::uint32_t tooLarge : {0x8000U, 0x7FFFFFFFU, 0xFFFF7FFFU}) {
    journal.Clear();
    connectivity.flags = tooLarge;
    EXPECT_FALSE(QueryConnectionState(&flags));
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(journal.All(), RunTimeWrites(419, 6, "Overflow"));
  }
}

TEST_F(ConnectivityProbeTest, AFaultOfThePlatformIsRecordedAndGivesFalse) {
  connectivity.fault = FaultNumber::InvalidProcedureCall;
  EXPECT_FALSE(QueryConnectionState(&flags));
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(journal.All(), RunTimeWrites(419, 5, "Invalid procedure call or argument"));
}

TEST_F(ConnectivityProbeTest, AMissingLibraryOrFunctionIsRecordedAndGivesFalse) {
  connectivity.fault = FaultNumber::FileNotFound;
  EXPECT_FALSE(QueryConnectionState(&flags));
  EXPECT_EQ(journal.All(), RunTimeWrites(419, 53, "File not found"));
  journal.Clear();
  connectivity.fault = FaultNumber::DllFunctionNotFound;
  EXPECT_FALSE(QueryConnectionExists());
  EXPECT_EQ(journal.All(), RunTimeWrites(419, 453, "Specified DLL function not found"));
}

TEST_F(ConnectivityProbeTest, AFaultInTheStateQueryIsRecordedOnceUnderItsOwnLocation) {
  connectivity.connected = true;
  connectivity.flags = 0x8000;
  EXPECT_FALSE(QueryConnectionExists());
  EXPECT_EQ(journal.All(), RunTimeWrites(419, 6, "Overflow"));
}

TEST_F(ConnectivityProbeTest, AFaultOfTheExistsQueryItselfIsRecordedAtLocation420) {
  connectivity.fault = FaultNumber::InvalidProcedureCall;
  spy.ThrowAt("ErrorLocationID", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(QueryConnectionExists());
  EXPECT_EQ(ValuesOf(record), (RecordValues{420, 1, 0, "", 13, "Type mismatch", true, 0}));
}

TEST_F(ConnectivityProbeTest, TheRecordIsNotClearedFirst) {
  LeaveEarlierFailure();
  connectivity.connected = true;
  QueryConnectionState(&flags);
  QueryConnectionExists();
  EXPECT_EQ(ValuesOf(record), kEarlierFailure);
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ConnectivityProbeTest, AFaultKeepsTheApplicationFields) {
  LeaveEarlierFailure();
  connectivity.fault = FaultNumber::OutOfMemory;
  QueryConnectionState(&flags);
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{419, 1, 150, "earlier message", 7, "Out of memory", true, 0}));
}

TEST_F(ConnectivityProbeTest, NeedsNoRecordWhileNothingFails) {
  ThisThread().errorRecord.reset();
  connectivity.connected = true;
  EXPECT_TRUE(QueryConnectionState(&flags));
  EXPECT_TRUE(QueryConnectionExists());
}

TEST_F(ConnectivityProbeTest, AFaultWithoutARecordReachesTheCaller) {
  ThisThread().errorRecord.reset();
  connectivity.fault = FaultNumber::InvalidProcedureCall;
  EXPECT_EQ(FaultOf([&] { return QueryConnectionState(&flags); }), 91);
  EXPECT_EQ(FaultOf([] { return QueryConnectionExists(); }), 91);
}

}  // namespace
}  // namespace latchkey::test
