// Run-time faults inside Encrypt and Decrypt, and the traps that record them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "tests/support/cipher_direction.h"
#include "tests/support/code_pages.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

class CipherFaultTest : public WatchedService, public testing::WithParamInterface<DirectionRow> {
 protected:
  CipherFaultTest() {
    api.InputData(ArrayOf("some data"));
    SetPassword("secret");
    EXPECT_TRUE(api.Encrypt(1, 1));
    earlierOutput = ElementsOf(api.OutputData());
    LeaveEarlierFailure();
  }

  bool Run(std::int16_t hash = 1, std::int16_t cipher = 2) {
    return (api.*GetParam().operation)(hash, cipher);
  }

  void ExpectBodyFault(std::int32_t number, const std::string& text) {
    EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(GetParam().bodyTrap, number, text));
    EXPECT_EQ(ElementsOf(api.OutputData()), GetParam().outputAfterFailure);
    EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
  }

  Bytes earlierOutput;
};

TEST_P(CipherFaultTest, FailedMemoryAndForeignExceptionsAreFaultsToo) {
  provider.ThrowAt("CryptDeriveKey", 1, std::bad_alloc());
  EXPECT_FALSE(Run());
  ExpectBodyFault(7, "Out of memory");

  LeaveEarlierFailure();
  provider.ThrowAt(GetParam().cipherCall, 1, std::runtime_error("foreign"));
  EXPECT_FALSE(Run());
  ExpectBodyFault(5, "Invalid procedure call or argument");
}

TEST_P(CipherFaultTest, AFaultIsRecordedBeforeTheKeyIsDestroyed) {
  ThisThread().currentStep = -7;
  provider.ThrowAt(GetParam().cipherCall, 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run());
  EXPECT_EQ(journal.Last(7), Joined({RunTimeWrites(GetParam().bodyTrap, 6, "Overflow", -7),
                                     {calls::DestroyKey(2)}}));
}

TEST_P(CipherFaultTest, AFaultIsRecordedBeforeTheHashIsDestroyed) {
  provider.ThrowAt("CryptDeriveKey", 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run());
  EXPECT_EQ(journal.Last(7),
            Joined({RunTimeWrites(GetParam().bodyTrap, 6, "Overflow"), {calls::DestroyHash(2)}}));
}

TEST_P(CipherFaultTest, AFaultInOneStepOfTheCleanUpDoesNotStopTheOthers) {
  provider.ThrowAt("CryptDestroyKey", 1, std::bad_alloc());
  EXPECT_TRUE(Run(1, 1));
  EXPECT_EQ(ValuesOf(record), AfterClear());
  EXPECT_EQ(journal.Count("CryptDestroyKey"), 1U);
}

TEST_P(CipherFaultTest, RecordsAFaultOfDestroyingTheUsedHash) {
  provider.ThrowAt("CryptDestroyHash", 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run(1, 1));
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(GetParam().bodyTrap, 6, "Overflow"));
  EXPECT_EQ(journal.Last(9), Joined({{calls::DestroyHash(2).Throws()},
                                     RunTimeWrites(GetParam().bodyTrap, 6, "Overflow"),
                                     {calls::DestroyKey(2), calls::DestroyHash(2)}}));
}

TEST_P(CipherFaultTest, AFaultOfTheCleanUpDoesNotHideTheFailureBeforeIt) {
  provider.FailAt(GetParam().cipherCall, 1);
  provider.ThrowAt("CryptDestroyKey", 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run());
  const auto& [location, number, text] = GetParam().cipher;
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(location, number, text));
}

TEST_P(CipherFaultTest, AFaultOfTheFirstClearIsRecordedByTheShellAndKeepsTheOutput) {
  spy.ThrowAt("Clear", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(Run());
  EXPECT_EQ(journal.All(),
            Joined({{"Clear"}, RunTimeWrites(GetParam().shellTrap, 13, "Type mismatch")}));
  EXPECT_EQ(ElementsOf(api.OutputData()), earlierOutput);
}

TEST_P(CipherFaultTest, AFaultOfTheSecondClearIsRecordedByTheBody) {
  spy.ThrowAt("Clear", 2, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(Run());
  EXPECT_EQ(journal.All(),
            Joined({{"Clear", "Clear"}, RunTimeWrites(GetParam().bodyTrap, 13, "Type mismatch")}));
}

TEST_P(CipherFaultTest, AFaultOfTheThirdClearIsRecordedByTheMappingAndThenAsABadCipher) {
  spy.ThrowAt("Clear", 3, Fault(FaultNumber::TypeMismatch));
  EXPECT_FALSE(Run());
  const auto& [location, number, text] = GetParam().cipherType;
  EXPECT_EQ(journal.All(), Joined({{"Clear", "Clear", "Clear"},
                                   RunTimeWrites(439, 13, "Type mismatch"),
                                   ApplicationWrites(location, number, text)}));
  EXPECT_EQ(ValuesOf(record),
            (RecordValues{location, 2, number, text, 13, "Type mismatch", true, 0}));
}

TEST_P(CipherFaultTest, AFailedWriteInTheMappingIsRecordedByTheMapping) {
  spy.ThrowAt("AppErrorDescription", 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run(1, 99));
  const auto& [location, number, text] = GetParam().cipherType;
  EXPECT_EQ(FailureWritesIn(journal),
            Joined({ApplicationWrites(726, 121, "Bad encryption type"),
                    RunTimeWrites(439, 6, "Overflow"), ApplicationWrites(location, number, text)}));
}

TEST_P(CipherFaultTest, AFailedWriteInTheBodyIsRecordedByTheBody) {
  spy.ThrowAt("AppErrorNumber", 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run(0, 1));
  ExpectBodyFault(6, "Overflow");
}

TEST_P(CipherFaultTest, AFaultThatTheBodyCannotRecordIsRecordedByTheShell) {
  provider.ThrowAt(GetParam().cipherCall, 1, Fault(FaultNumber::TypeMismatch));
  spy.ThrowAt("RTErrorNumber", 1, Fault(FaultNumber::Overflow));
  EXPECT_FALSE(Run());
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(GetParam().shellTrap, 6, "Overflow"));
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_P(CipherFaultTest, AStepThatDoesNotFitTheRecordReachesTheCallerAfterTheFlagIsSet) {
  ThisThread().currentStep = 32768;
  provider.FailAt(GetParam().cipherCall, 1);
  EXPECT_EQ(FaultOf([this] { return Run(); }), 6);
  RecordValues expected = AfterClear();
  expected.exists = true;
  EXPECT_EQ(ValuesOf(record), expected);
  EXPECT_EQ(ElementsOf(api.OutputData()), GetParam().outputAfterFailure);
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_P(CipherFaultTest, AStepThatDoesNotFitTheRecordDoesNotPreventSuccess) {
  ThisThread().currentStep = 32768;
  EXPECT_TRUE(Run(1, 1));
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_P(CipherFaultTest, ARecordDestroyedDuringTheOperationRaisesObjectNotSet) {
  provider.FailAfter(GetParam().cipherCall, 1, [] { ThisThread().errorRecord.reset(); });
  EXPECT_EQ(FaultOf([this] { return Run(); }), 91);
  EXPECT_EQ(ElementsOf(api.OutputData()), GetParam().outputAfterFailure);
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_P(CipherFaultTest, AcceptsAPasswordOfAnyBytes) {
  ByteArray password{0x82, 0xA0, 0};
  api.Password(password);
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_TRUE(Run(1, 1));
  EXPECT_THAT(journal.All(), testing::Contains(calls::HashData(2, {0x82, 0xA0})));
}

INSTANTIATE_TEST_SUITE_P(InEachDirection, CipherFaultTest,
                         testing::Values(kEncryptRow, kDecryptRow),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace latchkey::test
