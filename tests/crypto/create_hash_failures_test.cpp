// CreateHash when the provider refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "tests/support/code_pages.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr std::int16_t kMd5 = 1;
constexpr std::array<std::int16_t, 3> kUnknownHashes{0, 5, -1};

class CreateHashFailureTest : public WatchedService {
 protected:
  // The journal of a failing CreateHash on an open provider.
  CallJournal::Entries FailingHash() {
    static_cast<void>(api.CreateRandom());
    LeaveEarlierFailure();
    EXPECT_EQ(api.CreateHash(u"abc", kMd5, true), u"");
    EXPECT_EQ(api.CreateHash(u"", kMd5), u"");
    EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
    return journal.All();
  }
};

class CreateHashWithoutProviderTest : public CreateHashFailureTest,
                                      public testing::WithParamInterface<bool> {};

TEST_P(CreateHashWithoutProviderTest, IsReportedAsAnErrorCreatingTheHash) {
  LeaveEarlierFailure();
  api.EnhancedProvider(GetParam());
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(api.CreateHash(u"abc", kMd5, true), u"");
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(709, 117, "Error creating hash"));
  EXPECT_EQ(journal.Count("CryptCreateHash"), 0U);
}

// The password is read after the provider is opened: a password that would be a fault is not read,
// and no random letters are made.
TEST_P(CreateHashWithoutProviderTest, IsReportedBeforeThePasswordIsRead) {
  api.EnhancedProvider(GetParam());
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  ByteArray behindZero = ByteArray::WithShape(1, 1, 4, Bytes{1, 2, 3, 4});
  api.Password(behindZero);
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(u"abc", kMd5, true, true), u"");
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(709, 117, "Error creating hash"));

  api.UseDefaultPWD(false);
  ByteArray none{0};
  api.Password(none);
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(u"abc", kMd5, true, true), u"");
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(709, 117, "Error creating hash"));
  EXPECT_TRUE(probe.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, CreateHashWithoutProviderTest, testing::Bool(),
                         [](const auto& row) { return row.param ? "Enhanced" : "Base"; });

TEST_F(CreateHashFailureTest, AnUnknownHashNumberIsNotRecorded) {
  for (const std::int16_t number : kUnknownHashes) {
    LeaveEarlierFailure();
    EXPECT_EQ(api.CreateHash(u"abc", number, true), u"");
    EXPECT_EQ(ValuesOf(record), AfterClear());
    EXPECT_THAT(journal.All(), Contains(calls::CreateHash(0).Fails()));
    EXPECT_EQ(journal.Count("CryptHashData"), 0U);
  }
}

TEST_F(CreateHashFailureTest, AnUnknownHashNumberIsNotRecordedEvenForTextThatCannotBeConverted) {
  scope.Services().codePage = &DoubleBytePage();
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(u"\u3042", 0), u"");
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashFailureTest, ACallWithoutArgumentsIsNotRecorded) {
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(), u"");
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashFailureTest, ARefusalToMakeAHashIsNotRecorded) {
  provider.FailAt("CryptCreateHash", CallPlan::kEveryCall);
  EXPECT_THAT(FailingHash(), ElementsAre("Clear", calls::CreateHash(0x8003).Fails(), "Clear",
                                         calls::CreateHash(0x8003).Fails()));
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashFailureTest, ARefusalToHashDataIsNotRecorded) {
  provider.FailAt("CryptHashData", CallPlan::kEveryCall);
  EXPECT_THAT(FailingHash(),
              ElementsAre("Clear", calls::CreateHash(0x8003).Makes(HashNo(1)),
                          calls::HashData(1, BytesOf("abc")).Fails(), calls::DestroyHash(1),
                          "Clear", calls::CreateHash(0x8003).Makes(HashNo(2)),
                          calls::HashData(2, {}).Fails(), calls::DestroyHash(2)));
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashFailureTest, ARefusalToReturnTheDigestIsNotRecorded) {
  provider.FailAt("CryptGetHashParam", CallPlan::kEveryCall, provider::kErrorMoreData);
  EXPECT_THAT(
      FailingHash(),
      ElementsAre("Clear", calls::CreateHash(0x8003).Makes(HashNo(1)),
                  calls::HashData(1, BytesOf("abc")), calls::GetDigest(1, 16).Fails(),
                  calls::DestroyHash(1), "Clear", calls::CreateHash(0x8003).Makes(HashNo(2)),
                  calls::HashData(2, {}), calls::GetDigest(2, 16).Fails(), calls::DestroyHash(2)));
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashFailureTest, IgnoresAHashThatCannotBeDestroyed) {
  provider.FailAt("CryptDestroyHash", 1);
  provider.ThrowAt("CryptDestroyHash", 2, Fault(FaultNumber::Overflow));
  provider.ThrowAt("CryptDestroyHash", 3, std::bad_alloc());
  for (int i = 0; i < 3; ++i) {
    LeaveEarlierFailure();
    EXPECT_EQ(Printable(api.CreateHash(u"abc", kMd5, true)), "900150983CD24FB0D6963F7D28E17F72");
    EXPECT_EQ(ValuesOf(record), AfterClear());
  }
}

TEST_F(CreateHashFailureTest, TheCurrentStepIsRecordedWithAMissingProvider) {
  ThisThread().currentStep = -32768;
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
  EXPECT_EQ(record.MachineState(), -32768);
}

}  // namespace
}  // namespace latchkey::test
