// Run-time faults inside CreateHash, and the traps that record them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "crypto/crypto_state.h"
#include "tests/support/code_pages.h"
#include "tests/support/failing_memory.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

constexpr std::int16_t kMd5 = 1;
constexpr std::array<const char*, 3> kSteps{"CryptCreateHash", "CryptHashData",
                                            "CryptGetHashParam"};

using CreateHashFaultTest = WatchedService;

TEST_F(CreateHashFaultTest, FailedMemoryAndForeignExceptionsAreFaultsToo) {
  for (const char* step : kSteps) {
    LeaveEarlierFailure();
    provider.ThrowAt(step, 1, std::bad_alloc());
    EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
    EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(432, 7, "Out of memory")) << step;

    LeaveEarlierFailure();
    provider.ThrowAt(step, 1, std::runtime_error("foreign"));
    EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
    EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(432, 5, "Invalid procedure call or argument"))
        << step;
  }
}

TEST_F(CreateHashFaultTest, AFaultIsRecordedBeforeTheHashIsDestroyed) {
  static_cast<void>(api.CreateRandom());
  ThisThread().currentStep = 9;
  journal.Clear();
  provider.ThrowAt("CryptGetHashParam", 1, Fault(FaultNumber::Overflow));
  EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
  EXPECT_EQ(journal.All(),
            Joined({{"Clear", calls::CreateHash(0x8003).Makes(HashNo(1)),
                     calls::HashData(1, BytesOf("abc")), calls::GetDigest(1, 16).Throws()},
                    RunTimeWrites(432, 6, "Overflow", 9),
                    {calls::DestroyHash(1)}}));
}

TEST_F(CreateHashFaultTest, ATextWithACharacterOfTwoBytesIsAFault) {
  scope.Services().codePage = &DoubleBytePage();
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(u"a\u3042", kMd5, true), u"");
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(432, 6, "Overflow"));
  EXPECT_EQ(journal.Count("CryptCreateHash"), 1U);
  EXPECT_EQ(journal.Count("CryptHashData"), 0U);
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_F(CreateHashFaultTest, APasswordOfAnyBytesIsAppended) {
  ByteArray password{0x82, 0xA0, 0};
  api.Password(password);
  scope.Services().codePage = &DoubleBytePage();
  static_cast<void>(api.CreateHash(u"abc", kMd5, true, true));
  EXPECT_FALSE(record.ErrorExists());
  EXPECT_EQ(journal.Named({"CryptHashData"}),
            CallJournal::Entries{calls::HashData(1, {0x61, 0x62, 0x63, 0x82, 0xA0})});
}

TEST_F(CreateHashFaultTest, AClearThatFaultsIsRecorded) {
  LeaveEarlierFailure();
  spy.ThrowAt("Clear", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
  EXPECT_EQ(FailureWritesIn(journal), RunTimeWrites(432, 13, "Type mismatch"));
}

TEST_F(CreateHashFaultTest, AStepThatDoesNotFitTheRecordReachesTheCallerAfterTheFlagIsSet) {
  static_cast<void>(api.CreateRandom());
  ThisThread().currentStep = 32768;
  provider.ThrowAt("CryptHashData", 1, Fault(FaultNumber::TypeMismatch));
  journal.Clear();
  EXPECT_EQ(FaultOf([this] { return api.CreateHash(u"abc", kMd5); }), 6);
  EXPECT_THAT(FailureWritesIn(journal), ElementsAre(Call("ErrorExists", true)));
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

// Makes the first allocation after the digest was read fail: that of the hexadecimal form.
class ProviderThatEndsMemory final : public ScriptedProvider {
 public:
  using ScriptedProvider::ScriptedProvider;

  bool CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam, std::uint8_t* pbData,
                         std::uint32_t* pdwDataLen, std::uint32_t dwFlags) override {
    const bool read =
        ScriptedProvider::CryptGetHashParam(hHash, dwParam, pbData, pdwDataLen, dwFlags);
    FailAllocation(1);
    return read;
  }
};

TEST_F(CreateHashFaultTest, AFaultOfTheHexadecimalConversionIsRecordedByTheConversion) {
  ProviderThatEndsMemory forgetful(journal);
  ThisThreadCrypto().provider = &forgetful;
  clsCryptoAPI unlucky;
  LeaveEarlierFailure();
  EXPECT_EQ(unlucky.CreateHash(u"abc", kMd5, true), u"");
  EXPECT_FALSE(AllocationFailurePending());
  EXPECT_EQ(FailureWritesIn(journal), RunTimeWrites(441, 7, "Out of memory"));
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(441, 7, "Out of memory"));
  EXPECT_THAT(forgetful.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_F(CreateHashFaultTest, AFaultWhileReturningTheRawDigestIsAFaultOfCreateHash) {
  ProviderThatEndsMemory forgetful(journal);
  ThisThreadCrypto().provider = &forgetful;
  clsCryptoAPI unlucky;
  LeaveEarlierFailure();
  EXPECT_EQ(unlucky.CreateHash(u"abc", kMd5), u"");
  EXPECT_FALSE(AllocationFailurePending());
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(432, 7, "Out of memory"));
}

}  // namespace
}  // namespace latchkey::test
