// The C interface when the provider, or memory, fails it: every failure is a status and is in the
// record where the component's own operation has it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "com/latchkey.h"
#include "tests/support/failing_memory.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

class CInterfaceFaultsTest : public WatchedService {
 public:
  CInterfaceFaultsTest() { EXPECT_EQ(latchkey_crypto_open(&crypto), LATCHKEY_OK); }
  ~CInterfaceFaultsTest() override { EXPECT_EQ(latchkey_crypto_close(crypto), LATCHKEY_OK); }

  int Encrypt() {
    const std::array<std::uint8_t, 5> input{1, 2, 3, 4, 5};
    length = output.size();
    return latchkey_encrypt(crypto, &key, input.data(), input.size(), output.data(), &length);
  }

  int Decrypt() {
    const std::array<std::uint8_t, 8> input{};
    length = output.size();
    return latchkey_decrypt(crypto, &key, input.data(), input.size(), output.data(), &length);
  }

  int Hash() {
    length = output.size();
    return latchkey_hash(crypto, LATCHKEY_MD5, nullptr, 0, output.data(), &length);
  }

  // The failure of one call of the provider, and whether the output stayed as it was.
  void ExpectFailure(int (CInterfaceFaultsTest::*call)(), const char* failing, int status,
                     const RecordValues& recorded) {
    LeaveEarlierFailure();
    output.fill(kUntouched);
    provider.FailAt(failing, CallPlan::kEveryCall);
    EXPECT_EQ((this->*call)(), status) << failing;
    EXPECT_EQ(ValuesOf(record), recorded) << failing;
    EXPECT_EQ(length, 0U) << failing;
    EXPECT_EQ(std::count(output.begin(), output.end(), kUntouched), std::ssize(output)) << failing;
    provider.Recover();
  }

  static constexpr std::uint8_t kUntouched = 0x55;

  latchkey_key key{0, LATCHKEY_MD5, LATCHKEY_DES, 0, nullptr, 0};
  latchkey_crypto* crypto = nullptr;
  std::array<std::uint8_t, 32> output{};
  std::size_t length = 0;
};

TEST_F(CInterfaceFaultsTest, EachRefusalOfTheProviderHasTheLocationOfTheOperation) {
  const auto encrypt = &CInterfaceFaultsTest::Encrypt;
  const auto decrypt = &CInterfaceFaultsTest::Decrypt;
  const auto failure = [this](std::int16_t location, std::int16_t number, const char* text) {
    return AfterApplicationFailure(location, number, text);
  };
  ExpectFailure(encrypt, "CryptAcquireContextA", LATCHKEY_NO_PROVIDER,
                failure(720, 114, "Error acquiring provider"));
  ExpectFailure(decrypt, "CryptAcquireContextA", LATCHKEY_NO_PROVIDER,
                failure(713, 114, "Error acquiring provider"));
  ExpectFailure(encrypt, "CryptCreateHash", LATCHKEY_KEY_FAILED,
                failure(721, 117, "Error creating hash"));
  ExpectFailure(decrypt, "CryptCreateHash", LATCHKEY_KEY_FAILED,
                failure(714, 117, "Error creating hash"));
  ExpectFailure(encrypt, "CryptHashData", LATCHKEY_KEY_FAILED,
                failure(722, 118, "Error creating hash data"));
  ExpectFailure(decrypt, "CryptHashData", LATCHKEY_KEY_FAILED,
                failure(715, 118, "Error creating hash data"));
  ExpectFailure(encrypt, "CryptDeriveKey", LATCHKEY_KEY_FAILED,
                failure(723, 119, "Error deriving key"));
  ExpectFailure(decrypt, "CryptDeriveKey", LATCHKEY_KEY_FAILED,
                failure(716, 119, "Error deriving key"));
  ExpectFailure(encrypt, "CryptEncrypt", LATCHKEY_CIPHER_FAILED,
                failure(724, 122, "Error encrypting data"));
  ExpectFailure(decrypt, "CryptDecrypt", LATCHKEY_CIPHER_FAILED,
                failure(717, 120, "Error decrypting data"));
}

TEST_F(CInterfaceFaultsTest, ADigestThatTheProviderRefusesIsNotRecorded) {
  const auto hash = &CInterfaceFaultsTest::Hash;
  ExpectFailure(hash, "CryptAcquireContextA", LATCHKEY_NO_PROVIDER,
                AfterApplicationFailure(709, 117, "Error creating hash"));
  ExpectFailure(hash, "CryptCreateHash", LATCHKEY_PROVIDER_REFUSED, AfterClear());
  ExpectFailure(hash, "CryptHashData", LATCHKEY_PROVIDER_REFUSED, AfterClear());
  ExpectFailure(hash, "CryptGetHashParam", LATCHKEY_PROVIDER_REFUSED, AfterClear());
}

TEST_F(CInterfaceFaultsTest, RandomBytesThatTheProviderRefusesAreCleared) {
  provider.FailAt("CryptGenRandom", CallPlan::kEveryCall);
  output.fill(kUntouched);
  EXPECT_EQ(latchkey_random_bytes(crypto, output.data(), 8), LATCHKEY_PROVIDER_REFUSED);
  EXPECT_EQ(std::count(output.begin(), output.end(), 0), 8);
  length = output.size();
  EXPECT_EQ(latchkey_create_random(crypto, 0, 8, output.data(), &length),
            LATCHKEY_PROVIDER_REFUSED);
  length = output.size();
  EXPECT_EQ(latchkey_create_salt(crypto, 0, 8, output.data(), &length), LATCHKEY_PROVIDER_REFUSED);
  provider.Recover();
}

TEST_F(CInterfaceFaultsTest, AMissingProviderOfRandomBytesIsRecorded) {
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(latchkey_random_bytes(crypto, output.data(), 8), LATCHKEY_NO_PROVIDER);
  EXPECT_EQ(ValuesOf(record).location, 710);
  length = output.size();
  EXPECT_EQ(latchkey_create_random(crypto, 0, 8, output.data(), &length), LATCHKEY_NO_PROVIDER);
  EXPECT_EQ(ValuesOf(record).location, 710);
}

TEST_F(CInterfaceFaultsTest, AnExceptionOfAnyKindBecomesAFault) {
  provider.ThrowAt("CryptDeriveKey", 1, std::runtime_error("foreign"));
  LeaveEarlierFailure();
  EXPECT_EQ(Encrypt(), LATCHKEY_FAULT);
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(438, 5, "Invalid procedure call or argument"));

  provider.ThrowAt("CryptDeriveKey", 1, Fault(FaultNumber::Overflow));
  LeaveEarlierFailure();
  EXPECT_EQ(Decrypt(), LATCHKEY_FAULT);
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(436, 6, "Overflow"));
}

// Calls a function over and over, each time with the next of its allocations failing.
template <class Call>
void ExpectEachAllocationFailureAsStatus(Call call) {
  ASSERT_EQ(call(), LATCHKEY_OK);
  int nth = 0;
  for (bool failed = true; failed;) {
    FailAllocation(++nth);
    const int status = call();
    failed = !AllocationFailurePending();
    FailAllocation(0);
    EXPECT_EQ(status, failed ? LATCHKEY_NO_MEMORY : LATCHKEY_OK) << "allocation " << nth;
    EXPECT_EQ(call(), LATCHKEY_OK) << "after allocation " << nth;
  }
  EXPECT_GT(nth, 1) << "no allocation was made to fail";
}

class CInterfaceMemoryTest : public testing::Test {
 public:
  CInterfaceMemoryTest() { EXPECT_EQ(latchkey_crypto_open(&crypto), LATCHKEY_OK); }
  ~CInterfaceMemoryTest() override { EXPECT_EQ(latchkey_crypto_close(crypto), LATCHKEY_OK); }

  const clsMain main;
  latchkey_crypto* crypto = nullptr;
  std::array<std::uint8_t, 64> output{};
  std::size_t length = 0;
};

TEST_F(CInterfaceMemoryTest, EncryptingIsRefused) {
  const latchkey_key key{LATCHKEY_DEFAULT_PASSWORD, LATCHKEY_MD5, LATCHKEY_DES, 0, nullptr, 0};
  ExpectEachAllocationFailureAsStatus([&] {
    length = output.size();
    return latchkey_encrypt(crypto, &key, nullptr, 0, output.data(), &length);
  });
}

TEST_F(CInterfaceMemoryTest, ConvertingIsRefused) {
  const std::array<std::uint8_t, 20> input{};
  ExpectEachAllocationFailureAsStatus([&] {
    length = output.size();
    return latchkey_hex_encode(input.data(), input.size(), reinterpret_cast<char*>(output.data()),
                               &length);
  });
  ExpectEachAllocationFailureAsStatus([&] {
    length = output.size();
    return latchkey_hex_decode("41424344454647484142434445464748", 32, output.data(), &length);
  });
}

TEST_F(CInterfaceMemoryTest, OpeningIsRefused) {
  ExpectEachAllocationFailureAsStatus([] {
    latchkey_crypto* opened = nullptr;
    const int status = latchkey_crypto_open(&opened);
    EXPECT_EQ(opened == nullptr, status != LATCHKEY_OK);
    EXPECT_EQ(latchkey_crypto_close(opened), LATCHKEY_OK);
    return status;
  });
}

TEST_F(CInterfaceFaultsTest, ABufferThatIsTooSmallIsClearedAsFarAsItGoes) {
  output.fill(kUntouched);
  length = 15;
  EXPECT_EQ(latchkey_hash(crypto, LATCHKEY_MD5, nullptr, 0, output.data(), &length),
            LATCHKEY_BUFFER_TOO_SMALL);
  EXPECT_EQ(length, 16U);
  EXPECT_EQ(std::count(output.begin(), output.begin() + 15, 0), 15);
  EXPECT_EQ(std::count(output.begin() + 15, output.end(), kUntouched), std::ssize(output) - 15);
}

TEST_F(CInterfaceFaultsTest, ABufferMayTouchTheInputButNotReachIntoIt) {
  std::array<std::uint8_t, 48> memory{};
  length = 32;
  EXPECT_EQ(latchkey_hash(crypto, LATCHKEY_MD5, memory.data(), 16, memory.data() + 16, &length),
            LATCHKEY_OK);
  length = 16;
  EXPECT_EQ(latchkey_hash(crypto, LATCHKEY_MD5, memory.data() + 16, 16, memory.data(), &length),
            LATCHKEY_OK);
  length = 32;
  EXPECT_EQ(latchkey_hash(crypto, LATCHKEY_MD5, memory.data(), 17, memory.data() + 16, &length),
            LATCHKEY_BAD_ARGUMENT);
  length = 17;
  EXPECT_EQ(latchkey_hash(crypto, LATCHKEY_MD5, memory.data() + 16, 16, memory.data(), &length),
            LATCHKEY_BAD_ARGUMENT);
}

}  // namespace
}  // namespace latchkey::test
