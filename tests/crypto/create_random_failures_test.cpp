// What CreateRandom records when it fails, and in which order.
#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "tests/support/random_service.h"

namespace latchkey::test {
namespace {

using CreateRandomFailureTest = RandomService;

TEST_F(CreateRandomFailureTest, AMissingProviderIsRecorded) {
  LeaveEarlierFailure();
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(api.CreateRandom(4), u"");
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(710, 114, "Error acquiring provider"));
  EXPECT_TRUE(probe.calls.empty());
}

TEST_F(CreateRandomFailureTest, RecordsAMissingProviderAfterTheFailedAcquisition) {
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(api.CreateRandom(4), u"");
  ExpectClearAndThen(Joined({ApplicationWrites(729, 125, "Error acquiring standard provider"),
                             ApplicationWrites(710, 114, "Error acquiring provider")}));
}

TEST_F(CreateRandomFailureTest, TheNextCallOpensAProviderThatIsAvailableAgain) {
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(api.CreateRandom(4), u"");
  provider.Recover();
  SetRandom("ABCD");
  EXPECT_EQ(api.CreateRandom(4, true), u"ABCD");
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(CreateRandomFailureTest, ARefusalOfTheProviderIsNotRecorded) {
  LeaveEarlierFailure();
  provider.FailAt("CryptGenRandom", 1);
  EXPECT_EQ(api.CreateRandom(4), u"");
  ExpectClearAndThen({});
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateRandomFailureTest, ANegativeLengthIsARunTimeFault) {
  for (const std::int32_t length : {-1, std::numeric_limits<std::int32_t>::min()}) {
    LeaveEarlierFailure();
    SetSeed();
    EXPECT_EQ(api.CreateRandom(length), u"");
    ExpectClearAndThen(RunTimeWrites(433, 5, "Invalid procedure call or argument"));
    EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(433, 5, "Invalid procedure call or argument"));
  }
  EXPECT_EQ(journal.Count("CryptGenRandom"), 0U);
}

TEST_F(CreateRandomFailureTest, AFaultOfTheSeedTextIsRecorded) {
  LeaveEarlierFailure();
  SetImpossibleSeed();
  EXPECT_EQ(api.CreateRandom(4), u"");
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(433, 11, "Division by zero"));
  EXPECT_EQ(journal.Count("CryptGenRandom"), 0U);
}

TEST_F(CreateRandomFailureTest, AFaultOfTheProviderIsRecorded) {
  provider.ThrowAt("CryptGenRandom", 1, std::bad_alloc());
  EXPECT_EQ(api.CreateRandom(4), u"");
  ExpectClearAndThen(RunTimeWrites(433, 7, "Out of memory"));
}

TEST_F(CreateRandomFailureTest, AFailureToClearTheRecordIsAFaultOfTheOperation) {
  spy.ThrowAt("Clear", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_EQ(api.CreateRandom(4), u"");
  ExpectClearAndThen(RunTimeWrites(433, 13, "Type mismatch"));
}

TEST_F(CreateRandomFailureTest, AfterAFaultTheProviderStaysOpenAndUsable) {
  EXPECT_EQ(api.CreateRandom(-1), u"");
  SetSeed();
  EXPECT_EQ(api.CreateRandom(0), kSeed);
  EXPECT_EQ(journal.Count("CryptAcquireContextA"), 1U);
}

TEST_F(CreateRandomFailureTest, TheStepIsCopiedIntoTheRecord) {
  ThisThread().currentStep = 12;
  EXPECT_EQ(api.CreateRandom(-1), u"");
  EXPECT_EQ(record.MachineState(), 12);
}

}  // namespace
}  // namespace latchkey::test
