// Decrypt: its result, and its failures for a wrong password or input.
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
constexpr std::int16_t kTripleDes = 4;
constexpr std::int16_t kTwoKeyTripleDes = 5;

class DecryptTest : public WatchedService {
 protected:
  DecryptTest() {
    api.EnhancedProvider(true);
    SetPassword("right");
  }

  // Sets the input to data encrypted with the right password.
  void GiveEncrypted(std::int16_t cipher, const Bytes& data = SampleBytes(20)) {
    SetPassword("right");
    api.InputData(ArrayOf(data));
    ASSERT_TRUE(api.Encrypt(kMd5, cipher));
    api.InputData(api.OutputData());
    LeaveEarlierFailure();
  }

  void ExpectRefused(std::int16_t hash, std::int16_t cipher) {
    EXPECT_FALSE(api.Decrypt(hash, cipher)) << "cipher " << cipher;
    EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(717, 120, "Error decrypting data"));
    EXPECT_EQ(ElementsOf(api.OutputData()), Bytes{0});
  }
};

TEST_F(DecryptTest, CallsTheProviderOnceForEachStep) {
  GiveEncrypted(kRc4, BytesOf("data"));
  const Bytes encrypted = DataOf(api.OutputData());
  journal.Clear();
  EXPECT_TRUE(api.Decrypt(kMd5, kRc4));
  EXPECT_THAT(
      journal.All(),
      ElementsAre("Clear", "Clear", "Clear", calls::CreateHash(0x8003).Makes(HashNo(2)),
                  calls::HashData(2, BytesOf("right")), calls::DeriveKey(0x6801, 2).Makes(KeyNo(2)),
                  calls::DestroyHash(2), calls::Decrypt(2, encrypted), calls::DestroyKey(2)));
}

TEST_F(DecryptTest, SuccessLeavesTheRecordCleared) {
  GiveEncrypted(kRc2);
  EXPECT_TRUE(api.Decrypt(kMd5, kRc2));
  ASSERT_EQ(DataOf(api.OutputData()), SampleBytes(20));
  EXPECT_EQ(ElementsOf(api.OutputData()).back(), 0);
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(DecryptTest, ABlockCipherUnderTheWrongPasswordIsRefused) {
  for (std::int16_t cipher = kRc2; cipher <= kTwoKeyTripleDes; ++cipher) {
    GiveEncrypted(cipher);
    SetPassword("wrong");
    ExpectRefused(kMd5, cipher);
    SetPassword("right");
    EXPECT_TRUE(api.Decrypt(kMd5, cipher));
  }
}

TEST_F(DecryptTest, AnotherCipherOrHashIsRefused) {
  GiveEncrypted(kRc2);
  for (const std::int16_t cipher : {kDes, kTripleDes, kTwoKeyTripleDes}) {
    LeaveEarlierFailure();
    ExpectRefused(kMd5, cipher);
  }
  for (std::int16_t hash = 2; hash <= 4; ++hash) {
    LeaveEarlierFailure();
    ExpectRefused(hash, kRc2);
  }
}

TEST_F(DecryptTest, Rc4UnderTheWrongPasswordGivesOtherBytesOfTheSameLength) {
  GiveEncrypted(kRc4);
  SetPassword("wrong");
  EXPECT_TRUE(api.Decrypt(kMd5, kRc4));
  EXPECT_EQ(DataOf(api.OutputData()).size(), 20U);
  EXPECT_NE(DataOf(api.OutputData()), SampleBytes(20));
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(DecryptTest, ABlockCipherRefusesPartsOfBlocks) {
  for (std::int16_t cipher = kRc2; cipher <= kTwoKeyTripleDes; ++cipher) {
    for (const std::size_t size : {1U, 7U, 9U, 15U}) {
      api.InputData(ArrayOf(SampleBytes(size)));
      LeaveEarlierFailure();
      ExpectRefused(kMd5, cipher);
    }
  }
}

TEST_F(DecryptTest, ABlockCipherRefusesEmptyInput) {
  for (const bool enhanced : {true, false}) {
    clsCryptoAPI fresh;
    fresh.EnhancedProvider(enhanced);
    const std::int16_t last = enhanced ? kTwoKeyTripleDes : kDes;
    for (std::int16_t cipher = kRc2; cipher <= last; ++cipher) {
      LeaveEarlierFailure();
      EXPECT_FALSE(fresh.Decrypt(kMd5, cipher));
      EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(717, 120, "Error decrypting data"));
      EXPECT_EQ(ElementsOf(fresh.OutputData()), Bytes{0});
    }
  }
}

TEST_F(DecryptTest, Rc4OfEmptyInputGivesASingleZero) {
  EXPECT_TRUE(api.Decrypt(kMd5, kRc4));
  EXPECT_EQ(ElementsOf(api.OutputData()), Bytes{0});
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(DecryptTest, KeepsTheInputForTheNextCall) {
  GiveEncrypted(kDes);
  SetPassword("wrong");
  EXPECT_FALSE(api.Decrypt(kMd5, kDes));
  SetPassword("right");
  EXPECT_TRUE(api.Decrypt(kMd5, kDes));
  EXPECT_TRUE(api.Decrypt(kMd5, kDes));
  EXPECT_EQ(DataOf(api.OutputData()), SampleBytes(20));
}

TEST_F(DecryptTest, AFailureReplacesTheEarlierOutputByASingleZero) {
  GiveEncrypted(kDes);
  ASSERT_TRUE(api.Decrypt(kMd5, kDes));
  EXPECT_FALSE(api.Decrypt(0, kDes));
  EXPECT_EQ(api.OutputData(), ByteArray{0});
}

TEST_F(DecryptTest, TheOutputKeepsItsTrailingSpaces) {
  provider.Recover();
  GiveEncrypted(kRc4, SampleBytes(4));
  const Bytes keyStream = [this] {
    Bytes stream = DataOf(api.OutputData());
    for (std::size_t i = 0; i < stream.size(); ++i) stream[i] ^= SampleBytes(4)[i];
    return stream;
  }();
  Bytes encrypted = BytesOf("a   ");
  for (std::size_t i = 0; i < encrypted.size(); ++i) encrypted[i] ^= keyStream[i];
  api.InputData(ArrayOf(encrypted));
  EXPECT_TRUE(api.Decrypt(kMd5, kRc4));
  EXPECT_EQ(DataOf(api.OutputData()), BytesOf("a   "));
}

// Conversion to text removes trailing spaces of encrypted data too.
TEST_F(DecryptTest, InputDataRemovesATrailingSpaceOfTheCiphertext) {
  for (std::uint8_t last = 0; last < 0xFF; ++last) {
    Bytes data = SampleBytes(20);
    data.push_back(last);
    api.InputData(ArrayOf(data));
    ASSERT_TRUE(api.Encrypt(kMd5, kRc4));
    const Bytes encrypted = DataOf(api.OutputData());
    if (encrypted.back() != ' ') continue;

    api.InputData(api.OutputData());
    EXPECT_TRUE(api.Decrypt(kMd5, kRc4));
    EXPECT_LT(DataOf(api.OutputData()).size(), data.size());
    return;
  }
  ADD_FAILURE() << "no such data";
}

}  // namespace
}  // namespace latchkey::test
