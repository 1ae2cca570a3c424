// How the service object opens its provider, and run-time faults meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "latchkey/fault.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

constexpr const char* kAcquire = "CryptAcquireContextA";
const Call kBaseCall(kAcquire, "", "Microsoft Base Cryptographic Provider v1.0", 1, 0xF0000000);
const Call kDefaultCall(kAcquire, "", "", 1, 8);
const Call kEnhancedCall(kAcquire, "", "Microsoft Enhanced Cryptographic Provider v1.0", 1,
                         0xF0000000);

class ProviderAcquisitionTest : public WatchedServiceOnPlainProvider {
 protected:
  [[nodiscard]] CallJournal::Entries AcquireCalls() const { return journal.Named({kAcquire}); }
};

TEST_F(ProviderAcquisitionTest, TheBaseProviderIsOpenedWithoutAKeySet) {
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_THAT(AcquireCalls(), ElementsAre(kBaseCall.Makes(ContextNo(1))));
}

TEST_F(ProviderAcquisitionTest, TheEnhancedProviderIsOpenedWithoutAKeySet) {
  api.EnhancedProvider(true);
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_THAT(AcquireCalls(), ElementsAre(kEnhancedCall.Makes(ContextNo(1))));
}

TEST_F(ProviderAcquisitionTest, FallsBackFromTheBaseProviderToTheDefaultOneWithANewKeySet) {
  LeaveEarlierFailure();
  provider.FailAt(kAcquire, 1);
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_THAT(AcquireCalls(), ElementsAre(kBaseCall.Fails(), kDefaultCall.Makes(ContextNo(1))));
  EXPECT_EQ(ValuesOf(record), AfterClear());
  EXPECT_EQ(journal.Count("ErrorExists"), 0U);
}

TEST_F(ProviderAcquisitionTest, TheEnhancedProviderHasNoFallback) {
  api.EnhancedProvider(true);
  provider.FailAt(kAcquire, 1);
  EXPECT_FALSE(api.Encrypt(1, 1));
  EXPECT_THAT(AcquireCalls(), ElementsAre(kEnhancedCall.Fails()));
}

TEST_F(ProviderAcquisitionTest, EveryOperationThatNeedsAProviderOpensIt) {
  const auto opens = [this](auto&& operation) {
    journal.Clear();
    clsCryptoAPI fresh;
    operation(fresh);
    return AcquireCalls().size() == 1;
  };
  EXPECT_TRUE(opens([](clsCryptoAPI& fresh) { return fresh.Encrypt(1, 1); }));
  EXPECT_TRUE(opens([](clsCryptoAPI& fresh) { return fresh.Decrypt(1, 1); }));
  EXPECT_TRUE(opens([](clsCryptoAPI& fresh) { return fresh.CreateHash(u"abc", 1); }));
  EXPECT_TRUE(opens([](clsCryptoAPI& fresh) { return fresh.CreateRandom(4); }));
}

TEST_F(ProviderAcquisitionTest, LaterOperationsUseTheOpenProvider) {
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_TRUE(api.Decrypt(2, 2));
  EXPECT_FALSE(api.CreateHash(u"abc", 1, true).empty());
  EXPECT_FALSE(api.CreateRandom(4).empty());
  EXPECT_EQ(AcquireCalls().size(), 1U);
}

TEST_F(ProviderAcquisitionTest, AfterAFailureTheNextOperationTriesAgain) {
  provider.FailAt(kAcquire, 1);
  provider.FailAt(kAcquire, 2);
  EXPECT_FALSE(api.Encrypt(1, 1));
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_THAT(AcquireCalls(),
              ElementsAre(kBaseCall.Fails(), kDefaultCall.Fails(), kBaseCall.Makes(ContextNo(1))));
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(ProviderAcquisitionTest, TheNextTryUsesTheCurrentEnhancedFlag) {
  provider.FailAt(kAcquire, 1);
  provider.FailAt(kAcquire, 2);
  EXPECT_FALSE(api.Encrypt(1, 1));
  journal.Clear();
  api.EnhancedProvider(true);
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_THAT(AcquireCalls(), ElementsAre(kEnhancedCall.Makes(ContextNo(1))));
}

TEST_F(ProviderAcquisitionTest, AProviderInUseStaysWhenTheEnhancedFlagChanges) {
  EXPECT_TRUE(api.Encrypt(1, 1));
  api.EnhancedProvider(true);
  EXPECT_TRUE(api.Encrypt(1, 4));
  EXPECT_THAT(AcquireCalls(), ElementsAre(kBaseCall.Makes(ContextNo(1))));
}

// Runs one operation on a provider that cannot be opened.
class UnavailableProviderTest : public ProviderAcquisitionTest,
                                public testing::WithParamInterface<bool> {
 protected:
  template <class Operation>
  CallJournal::Entries WritesOf(Operation&& operation) {
    api.EnhancedProvider(GetParam());
    provider.FailAt(kAcquire, CallPlan::kEveryCall);
    operation(api);
    provider.Recover();
    return FailureWritesIn(journal);
  }

  // The failure of the acquisition itself, in full, followed by that of the operation.
  [[nodiscard]] CallJournal::Entries Writes(int location, int number, const char* text) const {
    return Joined({GetParam()
                       ? ApplicationWrites(728, 124, "Error acquiring enhanced provider", 12)
                       : ApplicationWrites(729, 125, "Error acquiring standard provider", 12),
                   ApplicationWrites(location, number, text, 12)});
  }

  void SetUp() override { ThisThread().currentStep = 12; }
};

TEST_P(UnavailableProviderTest, EncryptOverwritesTheFailureOfTheAcquisition) {
  EXPECT_EQ(WritesOf([](clsCryptoAPI& used) { return used.Encrypt(1, 1); }),
            Writes(720, 114, "Error acquiring provider"));
}

TEST_P(UnavailableProviderTest, DecryptOverwritesTheFailureOfTheAcquisition) {
  EXPECT_EQ(WritesOf([](clsCryptoAPI& used) { return used.Decrypt(1, 1); }),
            Writes(713, 114, "Error acquiring provider"));
}

TEST_P(UnavailableProviderTest, CreateHashOverwritesTheFailureOfTheAcquisition) {
  EXPECT_EQ(WritesOf([](clsCryptoAPI& used) { return used.CreateHash(u"abc", 1); }),
            Writes(709, 117, "Error creating hash"));
}

TEST_P(UnavailableProviderTest, CreateRandomOverwritesTheFailureOfTheAcquisition) {
  EXPECT_EQ(WritesOf([](clsCryptoAPI& used) { return used.CreateRandom(4); }),
            Writes(710, 114, "Error acquiring provider"));
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, UnavailableProviderTest, testing::Bool(),
                         [](const auto& row) { return row.param ? "Enhanced" : "Base"; });

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

}  // namespace
}  // namespace latchkey::test
