// The C interface when an exception that is none of its own comes up, and when a buffer is not what
// it takes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "latchkey.h"
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

  static constexpr std::uint8_t kUntouched = 0x55;

  latchkey_key key{0, LATCHKEY_MD5, LATCHKEY_DES, 0, nullptr, 0};
  latchkey_crypto* crypto = nullptr;
  std::array<std::uint8_t, 32> output{};
  std::size_t length = 0;
};

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
