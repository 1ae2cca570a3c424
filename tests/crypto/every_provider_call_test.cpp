// Each operation, with each of its provider calls refused once and raising a fault once: the
// record, the result, the output, the handles, secrets in freed memory, and the next operation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "tests/support/cipher_direction.h"
#include "tests/support/freed_memory.h"
#include "tests/support/swept_service.h"

namespace latchkey::test {
namespace {

// An operation and its reports.
struct Operation {
  std::string name;
  // Returns the result as text, empty if the operation failed.
  std::function<Text(clsCryptoAPI&)> run;
  ReportedFailure provider;
  std::int16_t trap = 0;
  // The report of each refused call; without one, the operation fails without recording anything.
  std::map<std::string, ReportedFailure> refusals = {};
  // The calls that may be refused, and those that may raise a fault, without effect.
  std::set<std::string> harmlessRefusals = {"CryptDestroyHash", "CryptDestroyKey"};
  std::set<std::string> harmlessFaults = {"CryptDestroyHash", "CryptDestroyKey"};
  Bytes outputAfterFailure = {};
};

class EveryProviderCallTest : public SweptService {
 protected:
  EveryProviderCallTest() { probe.HoldStill(); }

  // Makes every call of a successful run fail in turn, in both manners. Returns the number of
  // failures.
  int Sweep(const Operation& operation, bool enhanced, const Bytes& input) {
    SCOPED_TRACE(operation.name + (enhanced ? ", enhanced" : ", base"));
    Text result;
    const auto calls = CallsOf(operation, enhanced, input, result);
    return ForEachFailure(calls, [&](const std::string& call, int nth, Manner manner) {
      clsCryptoAPI object;
      Prepare(object, enhanced, input);
      ExpectEnding(object, operation, call, nth, manner, result);
      EXPECT_EQ(operation.run(object), result) << "the call after the failure";
      EXPECT_FALSE(record.ErrorExists());
    });
  }

 private:
  // Gives the object of an operation the same secret as password and as input.
  static void Prepare(clsCryptoAPI& object, bool enhanced, const Bytes& input) {
    object.EnhancedProvider(enhanced);
    ByteArray password = ArrayOf(kSecret);
    object.Password(password);
    object.InputData(ArrayOf(input));
  }

  std::vector<std::string> CallsOf(const Operation& operation, bool enhanced, const Bytes& input,
                                   Text& result) {
    clsCryptoAPI object;
    Prepare(object, enhanced, input);
    journal.Clear();
    result = operation.run(object);
    EXPECT_NE(result, u"");
    return CallsMade();
  }

  [[nodiscard]] RecordValues ExpectedRecord(const Operation& operation, const std::string& call,
                                            Manner manner) const {
    const auto application = [this](const ReportedFailure& failure) {
      return AfterApplicationFailure(failure.location, failure.number, failure.text);
    };
    if (call == kAcquire) {
      RecordValues values = application(operation.provider);
      if (manner == Manner::Faulted) values.rtNumber = 13, values.rtText = "Type mismatch";
      return values;
    }
    if (manner == Manner::Faulted) {
      return AfterRunTimeFailure(operation.trap, 13, "Type mismatch");
    }
    const auto refusal = operation.refusals.find(call);
    return refusal != operation.refusals.end() ? application(refusal->second) : AfterClear();
  }

  void ExpectEnding(clsCryptoAPI& object, const Operation& operation, const std::string& call,
                    int nth, Manner manner, const Text& result) {
    const auto& harmless =
        manner == Manner::Refused ? operation.harmlessRefusals : operation.harmlessFaults;
    const bool succeeds = harmless.contains(call);
    const Bytes secret = BytesOf(kSecret);
    LeaveEarlierFailure();
    PlanFailure(call, nth, manner);
    {
      const FreedMemory freed(secret);
      EXPECT_EQ(operation.run(object), succeeds ? result : Text());
      EXPECT_EQ(freed.BlocksWithSecret(), 0U);
    }
    EXPECT_EQ(ValuesOf(record), succeeds ? AfterClear() : ExpectedRecord(operation, call, manner));
    if (!succeeds) {
      EXPECT_EQ(ElementsOf(object.OutputData()), operation.outputAfterFailure);
    }
    EXPECT_EQ(DataOf(object.Password()), secret);
    // The object owns the context; every other handle is closed, exactly once.
    EXPECT_EQ(provider.OpenHandles().size(), call == kAcquire ? 0U : 1U);
    provider.Recover();
  }

 protected:
  // The secret, encrypted with itself as password.
  static Bytes CiphertextOf(bool enhanced, std::int16_t hash, std::int16_t cipher) {
    clsCryptoAPI object;
    Prepare(object, enhanced, BytesOf(kSecret));
    EXPECT_TRUE(object.Encrypt(hash, cipher));
    return DataOf(object.OutputData());
  }

  static constexpr const char* kSecret = "a secret of more than sixteen letters";
};

// Encrypt or Decrypt with all its reports.
Operation CipherOperation(const DirectionRow& row, std::int16_t hash, std::int16_t cipher) {
  const auto run = [&row, hash, cipher](clsCryptoAPI& object) {
    if (!(object.*row.operation)(hash, cipher)) return Text();
    return Wide(Hex(object.OutputData().Elements()));
  };
  return {std::string(row.name) + " " + std::to_string(hash) + " " + std::to_string(cipher),
          run,
          row.provider,
          row.bodyTrap,
          {{"CryptCreateHash", row.hash},
           {"CryptHashData", row.hashData},
           {"CryptDeriveKey", row.key},
           {row.cipherCall, row.cipher}},
          {"CryptDestroyHash", "CryptDestroyKey"},
          {"CryptDestroyKey"},
          row.outputAfterFailure};
}

TEST_F(EveryProviderCallTest, FailuresInEncryptAndDecryptAreReported) {
  int failures = 0;
  for (const bool enhanced : {false, true}) {
    for (std::int16_t hash = 1; hash <= 4; ++hash) {
      for (std::int16_t cipher = 1; cipher <= (enhanced ? 5 : 3); ++cipher) {
        failures += Sweep(CipherOperation(kEncryptRow, hash, cipher), enhanced, BytesOf(kSecret));
        failures += Sweep(CipherOperation(kDecryptRow, hash, cipher), enhanced,
                          CiphertextOf(enhanced, hash, cipher));
      }
    }
  }
  // 64 operations of 7 calls, which fail in two manners.
  EXPECT_EQ(failures, 64 * 7 * 2);
}

TEST_F(EveryProviderCallTest, FailuresInCreateHashAreReported) {
  int failures = 0;
  for (std::int16_t hash = 1; hash <= 4; ++hash) {
    for (const bool withPassword : {false, true}) {
      const Operation operation{"CreateHash " + std::to_string(hash),
                                [=](clsCryptoAPI& object) {
                                  return object.CreateHash(Wide(kSecret), hash, true, withPassword);
                                },
                                {709, 117, "Error creating hash"},
                                432};
      failures += Sweep(operation, withPassword, BytesOf(kSecret));
    }
  }
  EXPECT_EQ(failures, 8 * 5 * 2);
}

TEST_F(EveryProviderCallTest, FailuresInRandomDataAreReported) {
  provider.SetRandomBytes(SampleBytes(16));
  const ReportedFailure noProvider{710, 114, "Error acquiring provider"};
  const Operation random{"CreateRandom",
                         [](clsCryptoAPI& object) { return object.CreateRandom(16, true, true); },
                         noProvider, 433};
  const Operation salt{"CreateSaltValue",
                       [](clsCryptoAPI& object) { return object.CreateSaltValue(16); }, noProvider,
                       433};
  int failures = 0;
  for (const bool enhanced : {false, true}) {
    failures += Sweep(random, enhanced, BytesOf(kSecret)) + Sweep(salt, enhanced, BytesOf(kSecret));
  }
  EXPECT_EQ(failures, 4 * 2 * 2);
}

}  // namespace
}  // namespace latchkey::test
