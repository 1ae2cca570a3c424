// Each function of the C interface that uses the provider, once for each call that it makes of it,
// with that call refused and with a fault raised from it: the status, the record, the outputs, the
// handles, what freed memory holds, and the function afterwards.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "tests/support/c_client.h"
#include "tests/support/cipher_direction.h"
#include "tests/support/freed_memory.h"
#include "tests/support/swept_service.h"

namespace latchkey::test {
namespace {

// The status of a refused call of the provider, and what is recorded; nothing without a location.
struct Refusal {
  int status = LATCHKEY_OK;
  ReportedFailure recorded = {};
};

struct Function {
  std::string name;
  std::function<int(CClient&)> call;
  std::int16_t trap = 0;
  // What is not named here may be refused without any harm.
  std::map<std::string, Refusal> refusals;
  std::set<std::string> harmlessFaults = {};
  // The component opens the provider for this one, and makes a refusal of what is raised by that.
  bool componentOpens = false;
};

constexpr std::string_view kSecret = "a secret of more than sixteen letters";

class EveryCProviderCallTest : public SweptService {
 protected:
  // Every call that a good run makes, in turn and in both manners. Gives how many there were.
  int Sweep(const Function& function) {
    SCOPED_TRACE(function.name);
    return ForEachFailure(CallsOf(function), [&](const std::string& call, int nth, Manner manner) {
      ExpectEnding(function, call, nth, manner);
      EXPECT_TRUE(provider.OpenHandles().empty());
    });
  }

 private:
  std::vector<std::string> CallsOf(const Function& function) {
    CClient client;
    journal.Clear();
    EXPECT_EQ(function.call(client), LATCHKEY_OK);
    return CallsMade();
  }

  // The status, and the record behind it.
  [[nodiscard]] std::pair<int, RecordValues> Expected(const Function& function,
                                                      const std::string& call,
                                                      Manner manner) const {
    const auto found = function.refusals.find(call);
    const bool refusal = manner == Manner::Refused || (call == kAcquire && function.componentOpens);
    if (refusal && found != function.refusals.end()) {
      const auto& [status, recorded] = found->second;
      if (recorded.location == 0) return {status, AfterClear()};
      RecordValues values =
          AfterApplicationFailure(recorded.location, recorded.number, recorded.text);
      if (manner == Manner::Faulted) values.rtNumber = 13, values.rtText = "Type mismatch";
      return {status, values};
    }
    if (refusal || function.harmlessFaults.contains(call)) return {LATCHKEY_OK, AfterClear()};
    return {LATCHKEY_FAULT, AfterRunTimeFailure(function.trap, 13, "Type mismatch")};
  }

  void ExpectEnding(const Function& function, const std::string& call, int nth, Manner manner) {
    CClient client;
    const Bytes secret = BytesOf(kSecret);
    const auto [status, recorded] = Expected(function, call, manner);
    LeaveEarlierFailure();
    PlanFailure(call, nth, manner);
    {
      const FreedMemory freed(secret);
      EXPECT_EQ(function.call(client), status);
      EXPECT_EQ(freed.BlocksWithSecret(), 0U);
    }
    EXPECT_EQ(ValuesOf(record), recorded);
    // The context is the client's; everything else that was made is closed, once.
    EXPECT_EQ(provider.OpenHandles().size(), call == kAcquire ? 0U : 1U);
    provider.Recover();
    EXPECT_EQ(function.call(client), LATCHKEY_OK) << "the call after the failure";
    EXPECT_FALSE(record.ErrorExists());
  }
};

using CipherFunction = int (CClient::*)(const latchkey_key&, std::span<const std::uint8_t>);

Function CipherCall(const DirectionRow& row, CipherFunction function, const latchkey_key& key,
                    const Bytes& input) {
  return {std::string(row.name) + " " + std::to_string(key.hash) + " " +
              std::to_string(key.cipher) + ", flags " + std::to_string(key.flags),
          [=](CClient& client) { return (client.*function)(key, input); },
          row.bodyTrap,
          {{kAcquire, {LATCHKEY_NO_PROVIDER, row.provider}},
           {"CryptCreateHash", {LATCHKEY_KEY_FAILED, row.hash}},
           {"CryptHashData", {LATCHKEY_KEY_FAILED, row.hashData}},
           {"CryptDeriveKey", {LATCHKEY_KEY_FAILED, row.key}},
           {"CryptSetKeyParam", {LATCHKEY_KEY_FAILED, row.key}},
           {row.cipherCall, {LATCHKEY_CIPHER_FAILED, row.cipher}}},
          {"CryptDestroyKey"}};
}

latchkey_key KeyOf(std::int32_t hash, std::int32_t cipher, bool enhanced) {
  latchkey_key key{enhanced ? std::uint32_t{LATCHKEY_ENHANCED} : 0, hash, cipher, 0, nullptr, 0};
  if (cipher == LATCHKEY_RC2) key.rc2_effective_bits = 40;
  key.password = reinterpret_cast<const std::uint8_t*>(kSecret.data());
  key.password_length = kSecret.size();
  return key;
}

TEST_F(EveryCProviderCallTest, OfEncryptAndDecryptIsReported) {
  int failures = 0;
  for (const bool enhanced : {false, true}) {
    for (std::int32_t hash = LATCHKEY_MD5; hash <= LATCHKEY_SHA1; ++hash) {
      for (std::int32_t cipher = LATCHKEY_RC4;
           cipher <= (enhanced ? LATCHKEY_3DES_112 : LATCHKEY_DES); ++cipher) {
        const latchkey_key key = KeyOf(hash, cipher, enhanced);
        const Bytes plaintext = BytesOf(kSecret);
        const Bytes ciphertext = [&] {
          CClient client;
          EXPECT_EQ(client.Encrypt(key, plaintext), LATCHKEY_OK);
          return client.Result();
        }();
        failures += Sweep(CipherCall(kEncryptRow, &CClient::Encrypt, key, plaintext));
        failures += Sweep(CipherCall(kDecryptRow, &CClient::Decrypt, key, ciphertext));
      }
    }
  }
  // 64 operations of 7 calls, 16 of them with one more for RC2, in two manners.
  EXPECT_EQ(failures, (64 * 7 + 16) * 2);
}

TEST_F(EveryCProviderCallTest, OfHashIsReported) {
  int failures = 0;
  for (std::int32_t hash = LATCHKEY_MD5; hash <= LATCHKEY_SHA1; ++hash) {
    failures += Sweep({"hash " + std::to_string(hash),
                       [=](CClient& client) { return client.Hash(hash, BytesOf("data")); },
                       432,
                       {{kAcquire, {LATCHKEY_NO_PROVIDER, {709, 117, "Error creating hash"}}},
                        {"CryptCreateHash", {LATCHKEY_PROVIDER_REFUSED}},
                        {"CryptHashData", {LATCHKEY_PROVIDER_REFUSED}},
                        {"CryptGetHashParam", {LATCHKEY_PROVIDER_REFUSED}}},
                       {"CryptDestroyHash"}});
  }
  EXPECT_EQ(failures, 4 * 5 * 2);
}

TEST_F(EveryCProviderCallTest, OfRandomDataIsReported) {
  probe.HoldStill();
  const std::map<std::string, Refusal> refusals{
      {kAcquire, {LATCHKEY_NO_PROVIDER, {710, 114, "Error acquiring provider"}}},
      {"CryptGenRandom", {LATCHKEY_PROVIDER_REFUSED}}};
  int failures = Sweep({"random bytes", &CClient::RandomBytes, 433, refusals});
  failures += Sweep({"random text", &CClient::CreateRandom, 433, refusals, {}, true});
  failures += Sweep(
      {"salt", [](CClient& client) { return client.CreateSalt(0); }, 433, refusals, {}, true});
  EXPECT_EQ(failures, 3 * 2 * 2);
}

// The contexts of base and enhanced provider, and the one of the component's random text.
TEST_F(EveryCProviderCallTest, OfClosingIsWithoutHarm) {
  for (const Manner manner : {Manner::Refused, Manner::Faulted}) {
    for (int nth = 1; nth <= 3; ++nth) {
      CClient client;
      EXPECT_EQ(client.Encrypt(KeyOf(LATCHKEY_MD5, LATCHKEY_DES, false), {}), LATCHKEY_OK);
      EXPECT_EQ(client.Encrypt(KeyOf(LATCHKEY_MD5, LATCHKEY_DES, true), {}), LATCHKEY_OK);
      EXPECT_EQ(client.CreateRandom(), LATCHKEY_OK);
      ASSERT_EQ(provider.OpenHandles().size(), 3U);
      LeaveEarlierFailure();
      PlanFailure("CryptReleaseContext", nth, manner);
      EXPECT_EQ(client.Close(), LATCHKEY_OK);
      EXPECT_TRUE(provider.OpenHandles().empty());
      EXPECT_EQ(ValuesOf(record), kEarlierFailure);
      provider.Recover();
    }
  }
}

}  // namespace
}  // namespace latchkey::test
