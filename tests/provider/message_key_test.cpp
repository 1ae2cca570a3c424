// Keys that several threads share, and the duplicates of keys that they may be made of.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/provider_session.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in the seam

constexpr std::array kCiphers{kAlgorithmRc4, kAlgorithmRc2, kAlgorithmDes, kAlgorithm3Des,
                              kAlgorithm3Des112};

class MessageKeyTest : public testing::TestWithParam<AlgorithmId> {
 protected:
  [[nodiscard]] HCRYPTKEY NewKey() const {
    return session.KeyOf(GetParam(), kAlgorithmMd5, Bytes{'a', 'b', 'c'});
  }

  static Bytes Encrypted(const MessageKey& key, Bytes message) {
    auto length = static_cast<std::uint32_t>(message.size());
    message.resize(message.size() + 8);
    EXPECT_TRUE(key.Encrypt(message.data(), &length, static_cast<std::uint32_t>(message.size())));
    message.resize(length);
    return message;
  }

  static Bytes Decrypted(const MessageKey& key, Bytes message) {
    auto length = static_cast<std::uint32_t>(message.size());
    EXPECT_TRUE(key.Decrypt(message.data(), &length));
    message.resize(length);
    return message;
  }

  ProviderSession session{kEnhancedProviderName};
};

TEST_P(MessageKeyTest, EachMessageStartsFromTheKeysFirstState) {
  const HCRYPTKEY key = NewKey();
  const auto shared = SystemCryptoProvider().MakeMessageKey(key);
  for (const std::size_t length : {0U, 1U, 7U, 8U, 24U, 600U, 5000U}) {
    const Bytes message(length, 0x5A);
    const Bytes expected =
        Encrypt(NewKey(), true, message, static_cast<std::uint32_t>(length) + 8).data;
    EXPECT_EQ(Encrypted(*shared, message), expected) << length;
    EXPECT_EQ(Decrypted(*shared, expected), message) << length;
  }
}

TEST_P(MessageKeyTest, AFailedMessageLeavesTheNextOneAlone) {
  const HCRYPTKEY key = NewKey();
  const auto shared = SystemCryptoProvider().MakeMessageKey(key);
  const Bytes message(20, 0x5A);
  const Bytes expected = Encrypted(*shared, message);
  if (GetParam() != kAlgorithmRc4) {
    Bytes part(7);
    std::uint32_t length = 7;
    EXPECT_FALSE(shared->Decrypt(part.data(), &length));
    EXPECT_EQ(SystemCryptoProvider().GetLastError(), kErrorBadData);
    length = 7;
    EXPECT_FALSE(shared->Encrypt(part.data(), &length, 7));
  }
  EXPECT_EQ(Encrypted(*shared, message), expected);
}

TEST_P(MessageKeyTest, ThreadsUseItAtOnce) {
  const HCRYPTKEY key = NewKey();
  const auto shared = SystemCryptoProvider().MakeMessageKey(key);
  const Bytes message(100, 0x5A);
  const Bytes expected = Encrypted(*shared, message);
  std::atomic<int> wrong{0};
  {
    std::vector<std::jthread> threads(4);
    for (std::jthread& thread : threads) {
      thread = std::jthread([&] {
        for (int round = 0; round < 200; ++round) {
          if (Encrypted(*shared, message) != expected) ++wrong;
          if (Decrypted(*shared, expected) != message) ++wrong;
        }
      });
    }
  }
  EXPECT_EQ(wrong, 0);
}

TEST_P(MessageKeyTest, ADuplicateContinuesFromTheStateOfTheKey) {
  const HCRYPTKEY key = NewKey();
  static_cast<void>(Encrypt(key, false, Bytes(16, 0x11), 16));
  HCRYPTKEY duplicate = 0;
  ASSERT_TRUE(SystemCryptoProvider().CryptDuplicateKey(key, nullptr, 0, &duplicate));
  const Bytes rest(24, 0x22);
  const CipherResult expected = Encrypt(key, true, rest, 32);
  EXPECT_EQ(Encrypt(duplicate, true, rest, 32), expected);
  EXPECT_TRUE(SystemCryptoProvider().CryptDestroyKey(duplicate));
}

// The message key of a provider without one.
TEST_P(MessageKeyTest, DuplicatesGiveTheSameAndLeaveNoHandle) {
  FaultyProvider provider;
  const HCRYPTKEY key = NewKey();
  const auto own = SystemCryptoProvider().MakeMessageKey(key);
  const auto shared = provider.MakeMessageKey(key);
  const Bytes message(100, 0x5A);
  EXPECT_EQ(Encrypted(*shared, message), Encrypted(*own, message));
  EXPECT_EQ(Decrypted(*shared, Encrypted(*own, message)), message);
  EXPECT_EQ(provider.OpenHandles(), 0);
}

TEST_P(MessageKeyTest, ADuplicateThatFailsFailsTheMessageAlone) {
  FaultyProvider provider;
  const HCRYPTKEY key = NewKey();
  const auto shared = provider.MakeMessageKey(key);
  for (const int call : {1, 2}) {
    Bytes data(16);
    std::uint32_t length = 8;
    provider.FailCall(call, FaultyProvider::Manner::Refuse);
    EXPECT_FALSE(shared->Encrypt(data.data(), &length, 16));
    EXPECT_EQ(provider.OpenHandles(), 0);
  }
  EXPECT_EQ(Encrypted(*shared, Bytes(8)).empty(), false);
}

INSTANTIATE_TEST_SUITE_P(Ciphers, MessageKeyTest, testing::ValuesIn(kCiphers));

TEST(DuplicateKeyTest, WrongCallsAreRefused) {
  const ProviderSession session(kEnhancedProviderName);
  const HCRYPTKEY key = session.KeyOf(kAlgorithmDes, kAlgorithmMd5, Bytes{'a'});
  HCRYPTKEY duplicate = 0;
  EXPECT_TRUE(SystemCryptoProvider().CryptDestroyKey(key));
  EXPECT_EQ(ErrorOf(SystemCryptoProvider().CryptDuplicateKey(key, nullptr, 0, &duplicate)),
            kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(SystemCryptoProvider().CryptDuplicateKey(0, nullptr, 0, &duplicate)),
            kErrorInvalidParameter);
}

}  // namespace
}  // namespace latchkey::test
