// On a thread without a clsMain, operations that need the record raise ObjectNotSet, and all others
// work.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "crypto/crypto_state.h"
#include "diagnostics/connectivity_probe.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_timer.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"
#include "tests/support/fake_connectivity.h"
#include "tests/support/fake_probe.h"
#include "tests/support/fault_of.h"
#include "tests/support/module_scope.h"
#include "tests/support/scripted_provider.h"

namespace latchkey::test {
namespace {

class WithoutRecord : public testing::Test {
 protected:
  WithoutRecord() {
    ThisThreadCrypto().provider = &provider;
    scope.Services().probe = &probe;
    scope.Services().connectivity = &connectivity;
  }

  ModuleScope scope;
  CallJournal journal;
  ScriptedProvider provider{journal, nullptr};
  FakeProbe probe;
  FakeConnectivity connectivity;
  clsCryptoAPI api;
};

struct Operation {
  std::string name;
  std::function<void(clsCryptoAPI&)> call;
};

class OperationWithoutRecordTest : public WithoutRecord,
                                   public testing::WithParamInterface<Operation> {};

TEST_P(OperationWithoutRecordTest, RaisesObjectNotSetBeforeAnythingElse) {
  EXPECT_EQ(FaultOf([&] { GetParam().call(api); }), 91);
  EXPECT_TRUE(journal.All().empty());
  EXPECT_TRUE(probe.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Operations, OperationWithoutRecordTest,
    testing::Values(
        Operation{"CreateHash",
                  [](clsCryptoAPI& api) { static_cast<void>(api.CreateHash(u"a", 1)); }},
        Operation{"CreateRandom",
                  [](clsCryptoAPI& api) { static_cast<void>(api.CreateRandom(4)); }},
        Operation{"CreateSaltValueOfLetters",
                  [](clsCryptoAPI& api) { static_cast<void>(api.CreateSaltValue(4, true)); }},
        Operation{"CreateSaltValue",
                  [](clsCryptoAPI& api) { static_cast<void>(api.CreateSaltValue(4)); }},
        Operation{"Encrypt", [](clsCryptoAPI& api) { api.Encrypt(1, 1); }},
        Operation{"Decrypt", [](clsCryptoAPI& api) { api.Decrypt(1, 1); }},
        Operation{"ConvertStringFromHexOfOddLength",
                  [](clsCryptoAPI& api) { static_cast<void>(api.ConvertStringFromHex(u"414")); }},
        Operation{"ConvertStringToHexWithoutMemory",
                  [](clsCryptoAPI& api) {
                    FailAllocation(1);
                    static_cast<void>(api.ConvertStringToHex(u"no short text"));
                  }}),
    [](const auto& operation) { return operation.param.name; });

TEST_F(WithoutRecord, ConversionsWorkWhileNothingFails) {
  EXPECT_EQ(api.ConvertStringToHex(u"A"), u"41");
  EXPECT_EQ(api.ConvertStringFromHex(u"41"), u"A");
  EXPECT_EQ(api.ByteArrayToString({65, 0}), u"A");
  EXPECT_EQ(ElementsOf(api.StringToByteArray(TextView(u"A"))), (Bytes{65, 0}));
}

TEST_F(WithoutRecord, FaultsOutsideATrapReachTheCallerUnchanged) {
  EXPECT_EQ(FaultOf([&] { return api.ByteArrayToString({}); }), 9);
  EXPECT_EQ(FaultOf([&] { return api.StringToByteArray(Null()); }), 94);
}

TEST_F(WithoutRecord, PropertiesOfTheServiceWork) {
  ByteArray password{65, 66, 0};
  api.InputData({65, 0});
  api.EnhancedProvider(true);
  api.UseDefaultPWD(false);
  api.Password(password);
  EXPECT_EQ(ElementsOf(api.Password()), (Bytes{65, 66, 0}));
  EXPECT_EQ(api.OutputData(), ByteArray());
}

TEST_F(WithoutRecord, ConnectivityQueriesNeedARecordOnlyForAFailure) {
  connectivity.connected = true;
  EXPECT_TRUE(QueryConnectionExists());
  connectivity.flags = 0x8000;
  EXPECT_EQ(FaultOf([] { return QueryConnectionExists(); }), 91);
}

TEST_F(WithoutRecord, TheTimerWorks) {
  probe.SetTicks({100, 105});
  clsTimer timer;
  EXPECT_EQ(timer.GetElapsedTime(), 5);
}

}  // namespace
}  // namespace latchkey::test
