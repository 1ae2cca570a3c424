// Run-time faults while the service object opens its provider.
#include <gtest/gtest.h>

#include <new>

#include "latchkey/fault.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

constexpr const char* kAcquire = "CryptAcquireContextA";

using AcquisitionFaultTest = WatchedServiceOnPlainProvider;

TEST_F(AcquisitionFaultTest, RecordsAFaultOfTheCallBeforeTheOperationsFailure) {
  LeaveEarlierFailure();
  provider.ThrowAt(kAcquire, 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(api.Encrypt(1, 1));
  EXPECT_EQ(FailureWritesIn(journal),
            Joined({RunTimeWrites(442, 13, "Type mismatch"),
                    ApplicationWrites(720, 114, "Error acquiring provider")}));
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{720, 2, 114, "Error acquiring provider", 13, "Type mismatch", true, 0}));
}

TEST_F(AcquisitionFaultTest, RecordsAFaultOfTheEnhancedCallAtTheSameLocation) {
  api.EnhancedProvider(true);
  provider.ThrowAt(kAcquire, 1, std::bad_alloc());
  EXPECT_FALSE(api.Decrypt(1, 1));
  EXPECT_EQ(FailureWritesIn(journal),
            Joined({RunTimeWrites(442, 7, "Out of memory"),
                    ApplicationWrites(713, 114, "Error acquiring provider")}));
}

TEST_F(AcquisitionFaultTest, DoesNotMakeTheSecondCallAfterAFaultOfTheFirst) {
  provider.ThrowAt(kAcquire, 1, Fault(FaultNumber::Overflow));
  EXPECT_EQ(api.CreateHash(u"abc", 1), u"");
  EXPECT_EQ(journal.Count(kAcquire), 1U);
  EXPECT_EQ(FailureWritesIn(journal), Joined({RunTimeWrites(442, 6, "Overflow"),
                                              ApplicationWrites(709, 117, "Error creating hash")}));
}

TEST_F(AcquisitionFaultTest, RecordsAFaultOfTheSecondCallAtTheSameLocation) {
  provider.FailAt(kAcquire, 1);
  provider.ThrowAt(kAcquire, 2, Fault(FaultNumber::Overflow));
  EXPECT_EQ(api.CreateHash(u"abc", 1), u"");
  EXPECT_EQ(FailureWritesIn(journal), Joined({RunTimeWrites(442, 6, "Overflow"),
                                              ApplicationWrites(709, 117, "Error creating hash")}));
}

TEST_F(AcquisitionFaultTest, RecordsAFailedWriteToTheRecordAsItsOwnFault) {
  provider.FailAt(kAcquire, CallPlan::kEveryCall);
  spy.ThrowAt("AppErrorNumber", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(api.Encrypt(1, 1));
  CallJournal::Entries begun = ApplicationWrites(729, 125, "Error acquiring standard provider");
  begun.pop_back();
  EXPECT_EQ(FailureWritesIn(journal),
            Joined({begun, RunTimeWrites(442, 13, "Type mismatch"),
                    ApplicationWrites(720, 114, "Error acquiring provider")}));
}

TEST_F(AcquisitionFaultTest, NextOperationTriesAgain) {
  provider.ThrowAt(kAcquire, 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(api.Encrypt(1, 1));
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_EQ(journal.Count(kAcquire), 2U);
}

}  // namespace
}  // namespace latchkey::test
