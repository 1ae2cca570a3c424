// Every failure that Encrypt and Decrypt find themselves, in both directions and with both
// providers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/cipher_direction.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

class CipherFailureTest : public WatchedService,
                          public testing::WithParamInterface<DirectionOnProvider> {
 protected:
  CipherFailureTest() {
    api.EnhancedProvider(std::get<1>(GetParam()));
    api.InputData(ArrayOf("some data"));
    SetPassword("secret");
    // Leaves an output that the failure must replace, and an open provider.
    EXPECT_TRUE(api.Encrypt(1, 1));
    LeaveEarlierFailure();
  }

  [[nodiscard]] static const DirectionRow& Direction() { return std::get<0>(GetParam()); }

  bool Run(std::int16_t hash, std::int16_t cipher) {
    return (api.*Direction().operation)(hash, cipher);
  }

  void ExpectReported(const ReportedFailure& failure) {
    const auto& [location, number, text] = failure;
    EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(location, number, text));
    EXPECT_EQ(ElementsOf(api.OutputData()), Direction().outputAfterFailure);
    EXPECT_EQ(api.OutputData().Dimensions(), Direction().outputAfterFailure.empty() ? 0 : 1);
    EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
  }

  // Checks the whole journal of a failure: the calls before it, its entry, the clean-up.
  void ExpectJournal(const CallJournal::Entries& before, const ReportedFailure& failure,
                     const CallJournal::Entries& cleanUp, int state = 0) {
    const auto& [location, number, text] = failure;
    EXPECT_EQ(journal.All(),
              Joined({before, ApplicationWrites(location, number, text, state), cleanUp}));
  }

  // The journal of a failure after the mapping of the numbers.
  static CallJournal::Entries AfterMapping(const CallJournal::Entries& calls) {
    return Joined({{"Clear", "Clear", "Clear"}, calls});
  }
};

TEST_P(CipherFailureTest, WithoutArgumentsTheHashNumberIsBad) {
  const bool encrypts = std::string(Direction().name) == "Encrypt";
  EXPECT_FALSE(encrypts ? api.Encrypt() : api.Decrypt());
  ExpectReported(Direction().hashType);
}

TEST_P(CipherFailureTest, ChecksTheHashNumberBeforeTheCipherNumber) {
  EXPECT_FALSE(Run(5, 99));
  ExpectReported(Direction().hashType);
  ExpectJournal({"Clear", "Clear"}, Direction().hashType, {});
}

TEST_P(CipherFailureTest, ChecksTheCipherNumberBeforeItOpensTheProvider) {
  clsCryptoAPI fresh;
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_FALSE((fresh.*Direction().operation)(1, 99));
  EXPECT_EQ(record.ErrorLocationID(), Direction().cipherType.location);
  EXPECT_EQ(journal.Count("CryptAcquireContextA"), 0U);
  provider.Recover();
}

TEST_P(CipherFailureTest, ReportsABadHashNumberBeforeAMissingProvider) {
  clsCryptoAPI fresh;
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_FALSE((fresh.*Direction().operation)(0, 1));
  EXPECT_EQ(record.ErrorLocationID(), Direction().hashType.location);
  EXPECT_EQ(journal.Count("CryptAcquireContextA"), 0U);
  provider.Recover();
}

TEST_P(CipherFailureTest, AMissingProviderIsReported) {
  clsCryptoAPI fresh;
  fresh.EnhancedProvider(std::get<1>(GetParam()));
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_FALSE((fresh.*Direction().operation)(1, 1));
  const auto& [location, number, text] = Direction().provider;
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(location, number, text));
  EXPECT_EQ(ElementsOf(fresh.OutputData()), Direction().outputAfterFailure);
  EXPECT_EQ(ElementsOf(fresh.Password()), Bytes{0});
  EXPECT_EQ(journal.Count("CryptCreateHash"), 0U);
}

TEST_P(CipherFailureTest, AHashThatCannotBeMadeIsReported) {
  provider.FailAt("CryptCreateHash", 1);
  EXPECT_FALSE(Run(1, 2));
  ExpectReported(Direction().hash);
  ExpectJournal(AfterMapping({calls::CreateHash(0x8003).Fails()}), Direction().hash, {});
}

TEST_P(CipherFailureTest, DataThatCannotBeHashedIsReportedBeforeTheHashIsDestroyed) {
  provider.FailAt("CryptHashData", 1);
  EXPECT_FALSE(Run(1, 2));
  ExpectReported(Direction().hashData);
  ExpectJournal(AfterMapping({calls::CreateHash(0x8003).Makes(HashNo(2)),
                              calls::HashData(2, BytesOf("secret")).Fails()}),
                Direction().hashData, {calls::DestroyHash(2)});
}

TEST_P(CipherFailureTest, AKeyThatCannotBeDerivedIsReportedBeforeTheHashIsDestroyed) {
  ThisThread().currentStep = 31;
  provider.FailAt("CryptDeriveKey", 1);
  EXPECT_FALSE(Run(1, 2));
  ExpectJournal(
      AfterMapping({calls::CreateHash(0x8003).Makes(HashNo(2)),
                    calls::HashData(2, BytesOf("secret")), calls::DeriveKey(0x6602, 2).Fails()}),
      Direction().key, {calls::DestroyHash(2)}, 31);
  EXPECT_EQ(record.MachineState(), 31);
  record.MachineState(0);
  ExpectReported(Direction().key);
}

TEST_P(CipherFailureTest, ACipherThatFailsIsReportedBeforeTheKeyIsDestroyed) {
  provider.FailAt(Direction().cipherCall, 1);
  EXPECT_FALSE(Run(1, 2));
  ExpectReported(Direction().cipher);
  const Bytes data = BytesOf("some data");
  const bool encrypts = std::string(Direction().name) == "Encrypt";
  const Call call = encrypts ? calls::Encrypt(2, data) : calls::Decrypt(2, data);
  ExpectJournal(
      AfterMapping(
          {calls::CreateHash(0x8003).Makes(HashNo(2)), calls::HashData(2, BytesOf("secret")),
           calls::DeriveKey(0x6602, 2).Makes(KeyNo(2)), calls::DestroyHash(2), call.Fails()}),
      Direction().cipher, {calls::DestroyKey(2)});
}

TEST_P(CipherFailureTest, AFailureKeepsInputAndPassword) {
  provider.FailAt(Direction().cipherCall, 1);
  EXPECT_FALSE(Run(1, 1));
  EXPECT_EQ(DataOf(api.Password()), BytesOf("secret"));
  provider.FailAt("CryptEncrypt", 1);
  journal.Clear();
  EXPECT_FALSE(api.Encrypt(1, 1));
  EXPECT_THAT(journal.Named({"CryptEncrypt"}),
              ElementsAre(testing::Field("arguments", &Call::arguments,
                                         testing::Contains(Call::Argument(BytesOf("some data"))))));
}

INSTANTIATE_TEST_SUITE_P(InEachDirection, CipherFailureTest,
                         testing::Combine(testing::Values(kEncryptRow, kDecryptRow),
                                          testing::Bool()),
                         [](const auto& row) { return NameOf(row.param); });

}  // namespace
}  // namespace latchkey::test
