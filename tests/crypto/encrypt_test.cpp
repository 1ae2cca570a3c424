// Encrypt without failures, and the lengths that block ciphers refuse.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

constexpr std::int16_t kMd5 = 1;
constexpr std::int16_t kRc4 = 1;
constexpr std::int16_t kRc2 = 2;
constexpr std::int16_t kDes = 3;
constexpr std::int16_t kTwoKeyTripleDes = 5;

class EncryptTest : public WatchedService {
 protected:
  Bytes Encrypted(std::span<const std::uint8_t> data, std::int16_t cipher) {
    api.InputData(ArrayOf(data));
    EXPECT_TRUE(api.Encrypt(kMd5, cipher));
    return DataOf(api.OutputData());
  }
};

TEST_F(EncryptTest, CallsTheProviderOnceForEachStep) {
  SetPassword("pw");
  api.InputData(ArrayOf("data"));
  provider.SetRandomBytes({0});
  static_cast<void>(api.CreateRandom());
  journal.Clear();
  EXPECT_TRUE(api.Encrypt(4, kRc2));
  EXPECT_THAT(
      journal.All(),
      ElementsAre("Clear", "Clear", "Clear", calls::CreateHash(0x8004).Makes(HashNo(1)),
                  calls::HashData(1, BytesOf("pw")), calls::DeriveKey(0x6602, 1).Makes(KeyNo(1)),
                  calls::DestroyHash(1), calls::Encrypt(1, BytesOf("data")), calls::DestroyKey(1)));
}

TEST_F(EncryptTest, OpensTheProviderAfterTheMappingAndBeforeTheHash) {
  EXPECT_TRUE(api.Encrypt(kMd5, kRc4));
  EXPECT_THAT(
      CallJournal::Entries(journal.All().begin() + 2, journal.All().begin() + 5),
      ElementsAre("Clear", calls::Any("CryptAcquireContextA"), calls::Any("CryptCreateHash")));
}

TEST_F(EncryptTest, SuccessLeavesTheRecordCleared) {
  LeaveEarlierFailure();
  EXPECT_TRUE(api.Encrypt(kMd5, kRc4));
  EXPECT_EQ(ValuesOf(record), AfterClear());
  EXPECT_EQ(FailureWritesIn(journal), CallJournal::Entries());
}

TEST_F(EncryptTest, TheOutputHasATrailingZeroElement) {
  api.InputData(ArrayOf("data"));
  EXPECT_TRUE(api.Encrypt(kMd5, kRc4));
  ASSERT_EQ(ElementsOf(api.OutputData()).size(), 5U);
  EXPECT_EQ(ElementsOf(api.OutputData()).back(), 0);
  EXPECT_EQ(api.OutputData().LowerBound(), 0);
}

TEST_F(EncryptTest, Rc4KeepsTheLength) {
  for (const std::size_t size : {1U, 2U, 3U, 4U, 7U, 8U, 9U, 64U, 1000U}) {
    const Bytes data = SampleBytes(size);
    const Bytes encrypted = Encrypted(data, kRc4);
    EXPECT_EQ(encrypted.size(), size);
    EXPECT_NE(encrypted, data);
  }
}

TEST_F(EncryptTest, Rc4OfEmptyInputGivesASingleZero) {
  EXPECT_TRUE(api.Encrypt(kMd5, kRc4));
  EXPECT_EQ(ElementsOf(api.OutputData()), Bytes{0});
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(EncryptTest, BlockCiphersPadToTheNextMultipleOfEight) {
  api.EnhancedProvider(true);
  for (std::int16_t cipher = kRc2; cipher <= kTwoKeyTripleDes; ++cipher) {
    for (const std::size_t size : {4U, 7U, 8U, 9U, 15U, 16U, 100U}) {
      EXPECT_EQ(Encrypted(SampleBytes(size), cipher).size(), size / 8 * 8 + 8);
    }
  }
}

class BlockCipherLengthTest : public EncryptTest, public testing::WithParamInterface<bool> {};

TEST_P(BlockCipherLengthTest, FewerThanFourBytesAreRefused) {
  api.EnhancedProvider(GetParam());
  const std::int16_t last = GetParam() ? kTwoKeyTripleDes : kDes;
  for (std::int16_t cipher = kRc2; cipher <= last; ++cipher) {
    EXPECT_EQ(Encrypted(SampleBytes(4), cipher).size(), 8U);
    for (std::size_t size = 0; size < 4; ++size) {
      api.InputData(ArrayOf(SampleBytes(size)));
      LeaveEarlierFailure();
      EXPECT_FALSE(api.Encrypt(kMd5, cipher));
      EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(724, 122, "Error encrypting data"));
      EXPECT_EQ(api.OutputData(), ByteArray());
      EXPECT_EQ(provider.GetLastError(), provider::kErrorMoreData);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(OfEachProvider, BlockCipherLengthTest, testing::Bool(),
                         [](const auto& row) { return row.param ? "Enhanced" : "Base"; });

TEST_F(EncryptTest, ANewObjectHasEmptyInput) {
  EXPECT_FALSE(api.Encrypt(kMd5, kDes));
  EXPECT_EQ(record.ErrorLocationID(), 724);
}

TEST_F(EncryptTest, KeepsTheInputForTheNextCall) {
  const Bytes data = SampleBytes(40);
  const Bytes first = Encrypted(data, kRc2);
  EXPECT_TRUE(api.Encrypt(kMd5, kRc2));
  EXPECT_EQ(DataOf(api.OutputData()), first);
  EXPECT_TRUE(api.Encrypt(kMd5, kDes));
  EXPECT_EQ(DataOf(api.OutputData()), Encrypted(data, kDes));
}

TEST_F(EncryptTest, KeepsTheInputAfterAFailure) {
  const Bytes data = SampleBytes(40);
  const Bytes encrypted = Encrypted(data, kRc2);
  provider.FailAt("CryptEncrypt", 1);
  EXPECT_FALSE(api.Encrypt(kMd5, kRc2));
  EXPECT_TRUE(api.Encrypt(kMd5, kRc2));
  EXPECT_EQ(DataOf(api.OutputData()), encrypted);
}

TEST_F(EncryptTest, AFailureDiscardsTheEarlierOutput) {
  api.InputData(ArrayOf("some data"));
  ASSERT_TRUE(api.Encrypt(kMd5, kRc4));
  EXPECT_FALSE(api.Encrypt(0, kRc4));
  EXPECT_EQ(api.OutputData(), ByteArray());
}

TEST_F(EncryptTest, KeepsTheStoredPassword) {
  SetPassword("secret");
  EXPECT_TRUE(api.Encrypt(kMd5, kRc4));
  EXPECT_EQ(DataOf(api.Password()), BytesOf("secret"));
}

TEST_F(EncryptTest, PasswordHashAndCipherAllChangeTheOutput) {
  api.InputData(ArrayOf("some data"));
  const auto encrypted = [this](const char* password, std::int16_t hash, std::int16_t cipher) {
    SetPassword(password);
    EXPECT_TRUE(api.Encrypt(hash, cipher));
    return DataOf(api.OutputData());
  };
  const Bytes reference = encrypted("secret", 1, 2);
  EXPECT_NE(encrypted("Secret", 1, 2), reference);
  EXPECT_NE(encrypted("secret", 2, 2), reference);
  EXPECT_NE(encrypted("secret", 1, 3), reference);
  EXPECT_EQ(encrypted("secret", 1, 2), reference);
}

TEST_F(EncryptTest, EncryptsTheWholeInputInOneCall) {
  const Bytes data = SampleBytes(300'000);
  EXPECT_EQ(Encrypted(data, kRc4).size(), data.size());
  EXPECT_THAT(journal.Named({"CryptEncrypt"}), ElementsAre(Call("CryptEncrypt", KeyNo(1), kNoHandle,
                                                                true, 0, Bytes(), 300000, 600000)));
}

}  // namespace
}  // namespace latchkey::test
