#include "diagnostics/error_trap.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "diagnostics/thread_state.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

using ErrorTrapTest = WatchedModule;

constexpr TrapSite kTrap{450, u"tested operation"};
constexpr CheckSite kCheck{760, 160, u"Error in a test", u"tested operation"};

TEST_F(ErrorTrapTest, AnApplicationFailureIsWrittenInOrder) {
  ThisThread().currentStep = 3;
  RecordApplicationFailure(kCheck);
  EXPECT_EQ(journal.All(), ApplicationWrites(760, 160, "Error in a test", 3));
}

TEST_F(ErrorTrapTest, ARunTimeFailureIsWrittenInOrder) {
  ThisThread().currentStep = -3;
  RecordRunTimeFailure(kTrap, Fault(FaultNumber::Overflow));
  EXPECT_EQ(journal.All(), RunTimeWrites(450, 6, "Overflow", -3));
}

TEST_F(ErrorTrapTest, AnApplicationFailureKeepsTheRunTimeFields) {
  LeaveEarlierFailure();
  RecordApplicationFailure(kCheck);
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{760, 2, 160, "Error in a test", 13, "earlier fault", true, 0}));
}

TEST_F(ErrorTrapTest, ARunTimeFailureKeepsTheApplicationFields) {
  LeaveEarlierFailure();
  RecordRunTimeFailure(kTrap, Fault(FaultNumber::DivisionByZero));
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{450, 1, 150, "earlier message", 11, "Division by zero", true, 0}));
}

TEST_F(ErrorTrapTest, AnApplicationFailureKeepsAnEarlierRunTimeFailure) {
  RecordRunTimeFailure(kTrap, Fault(FaultNumber::Overflow));
  RecordApplicationFailure(kCheck);
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{760, 2, 160, "Error in a test", 6, "Overflow", true, 0}));
}

TEST_F(ErrorTrapTest, AfterClearARunTimeFailureKeepsNumberAndLocation) {
  ThisThread().currentStep = 4;
  RecordRunTimeFailure({410, u"tested operation"}, Fault(FaultNumber::InvalidProcedureCall));
  record.Clear();
  EXPECT_EQ(ValuesOf(record), (RecordValues{410, 2, 0, "", 5, "", false, 0}));
}

TEST_F(ErrorTrapTest, TheStepFitsUpToTheLimitsOfAnInteger) {
  for (const std::int32_t step : {32767, -32768}) {
    ThisThread().currentStep = step;
    RecordApplicationFailure(kCheck);
    EXPECT_EQ(record.MachineState(), step);
  }
}

TEST_F(ErrorTrapTest, AStepThatDoesNotFitRaisesOverflowAfterTheFlagIsSet) {
  for (const std::int32_t step : {32768, -32769}) {
    journal.Clear();
    ThisThread().currentStep = step;
    EXPECT_EQ(FaultOf([] { RecordApplicationFailure(kCheck); }), 6);
    EXPECT_EQ(journal.All(), (CallJournal::Entries{Call("ErrorExists", true)}));
  }
}

TEST_F(ErrorTrapTest, ACompletedBodyWritesNothing) {
  LeaveEarlierFailure();
  EXPECT_TRUE(RunTrapped(kTrap, [] {}));
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ErrorTrapTest, AFaultIsRecordedAtTheTrapAndNotRaised) {
  EXPECT_FALSE(RunTrapped(kTrap, [] { throw Fault(FaultNumber::TypeMismatch); }));
  EXPECT_EQ(journal.All(), RunTimeWrites(450, 13, "Type mismatch"));
}

TEST_F(ErrorTrapTest, AFailedAllocationIsRecordedAsOutOfMemory) {
  EXPECT_FALSE(RunTrapped(kTrap, [] { throw std::bad_alloc(); }));
  EXPECT_EQ(journal.All(), RunTimeWrites(450, 7, "Out of memory"));
}

TEST_F(ErrorTrapTest, AForeignExceptionIsRecordedAsAnInvalidCall) {
  EXPECT_FALSE(RunTrapped(kTrap, [] { throw std::runtime_error("foreign"); }));
  EXPECT_EQ(journal.All(), RunTimeWrites(450, 5, "Invalid procedure call or argument"));
}

TEST_F(ErrorTrapTest, AFailedWriteToTheRecordIsAFaultOfTheOperation) {
  spy.ThrowAt("AppErrorNumber", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(RunTrapped(kTrap, [] { RecordApplicationFailure(kCheck); }));
  EXPECT_EQ(ValuesOf(record), (RecordValues{450, 1, 0, "", 13, "Type mismatch", true, 0}));
}

TEST_F(ErrorTrapTest, TheLastFailureWins) {
  RunTrapped(kTrap, [] {
    RunTrapped({449, u"inner operation"}, [] { throw Fault(FaultNumber::Overflow); });
    throw Fault(FaultNumber::DivisionByZero);
  });
  EXPECT_EQ(ValuesOf(record), (RecordValues{450, 1, 0, "", 11, "Division by zero", true, 0}));
}

TEST_F(ErrorTrapTest, AStepThatDoesNotFitReachesTheCallerThroughTheTrap) {
  ThisThread().currentStep = 32768;
  const auto operation = [] {
    return RunTrapped(kTrap, [] { throw Fault(FaultNumber::TypeMismatch); });
  };
  EXPECT_EQ(FaultOf(operation), 6);
}

TEST(ErrorTrapWithoutRecordTest, TheMissingRecordReachesTheCaller) {
  const ModuleScope scope;
  EXPECT_EQ(FaultOf([] { RecordApplicationFailure(kCheck); }), 91);
  EXPECT_EQ(FaultOf([] { return RunTrapped(kTrap, [] { throw Fault(FaultNumber::Overflow); }); }),
            91);
}

TEST(ErrorTrapWithoutRecordTest, ABodyThatCompletesNeedsNoRecord) {
  const ModuleScope scope;
  EXPECT_TRUE(RunTrapped(kTrap, [] {}));
}

}  // namespace
}  // namespace latchkey::test
