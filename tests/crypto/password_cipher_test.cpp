// The password cipher, which processes bytes exactly as they are.
#include "crypto/password_cipher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "latchkey/fault.h"
#include "tests/support/bytes.h"
#include "tests/support/fault_of.h"
#include "tests/support/provider_calls.h"
#include "tests/support/scripted_provider.h"

namespace latchkey::test {
namespace {

using provider::kAlgorithmDes;
using provider::kAlgorithmMd5;
using provider::kAlgorithmRc2;
using provider::kAlgorithmRc4;
using testing::ElementsAre;
using testing::IsEmpty;

class PasswordCipherTest : public testing::Test {
 protected:
  PasswordCipherTest() {
    ContextTrait::Type opened{&provider};
    EXPECT_TRUE(provider.CryptAcquireContextA(&opened.value, "", provider::kEnhancedProviderName,
                                              provider::kProviderTypeRsaFull,
                                              provider::kVerifyContext));
    context.Reset(opened);
    journal.Clear();
  }

  // A key derived with MD5.
  PasswordKey DerivedKey(provider::AlgorithmId cipher, std::string_view password = "pw") {
    PasswordKey key;
    EXPECT_EQ(key.Derive(context, {kAlgorithmMd5, cipher, BytesOf(password)}), CipherStep::Done);
    return key;
  }

  // Encrypts or decrypts the bytes; empty on failure.
  static Bytes Run(PasswordKey& key, CipherDirection direction, Bytes data, std::size_t room) {
    auto length = static_cast<std::uint32_t>(data.size());
    data.resize(room);
    if (key.Transform(direction, data, length) != CipherStep::Done) return {};
    data.resize(length);
    return data;
  }
  Bytes Encrypted(provider::AlgorithmId algorithm, std::string_view password, const Bytes& data,
                  std::size_t room) {
    PasswordKey key = DerivedKey(algorithm, password);
    return Run(key, CipherDirection::Encrypt, data, room);
  }
  Bytes Decrypted(provider::AlgorithmId algorithm, std::string_view password, const Bytes& data) {
    PasswordKey key = DerivedKey(algorithm, password);
    return Run(key, CipherDirection::Decrypt, data, data.size());
  }

  // Encrypts 24 bytes and 3 more in two pieces.
  Bytes EncryptedInPieces(provider::AlgorithmId algorithm, const Bytes& data) {
    PasswordKey key = DerivedKey(algorithm);
    Bytes first(data.begin(), data.begin() + 24);
    std::uint32_t firstLength = 24;
    EXPECT_EQ(key.Transform(CipherDirection::Encrypt, first, firstLength, false), CipherStep::Done);
    EXPECT_EQ(firstLength, 24U);
    Bytes last(data.begin() + 24, data.end());
    auto lastLength = static_cast<std::uint32_t>(last.size());
    last.resize(8);
    EXPECT_EQ(key.Transform(CipherDirection::Encrypt, last, lastLength), CipherStep::Done);
    last.resize(lastLength);
    first.insert(first.end(), last.begin(), last.end());
    return first;
  }

  CallJournal journal;
  ScriptedProvider provider{journal};
  UniqueContext context;
};

TEST_F(PasswordCipherTest, DecryptionReversesEncryption) {
  for (const std::size_t size : {0U, 1U, 3U, 8U, 9U, 1000U}) {
    const Bytes data = SampleBytes(size);
    EXPECT_EQ(Decrypted(kAlgorithmDes, "pw", Encrypted(kAlgorithmDes, "pw", data, size + 8)), data);
    EXPECT_EQ(Decrypted(kAlgorithmRc4, "pw", Encrypted(kAlgorithmRc4, "pw", data, size)), data);
  }
}

TEST_F(PasswordCipherTest, TrailingSpacesOfDataAndPasswordAreSignificant) {
  const Bytes data = BytesOf("data  ");
  const Bytes encrypted = Encrypted(kAlgorithmDes, "pw ", data, 8);
  EXPECT_EQ(Decrypted(kAlgorithmDes, "pw ", encrypted), data);
  EXPECT_NE(Encrypted(kAlgorithmDes, "pw", data, 8), encrypted);
}

TEST_F(PasswordCipherTest, PiecesGiveTheSameResultAsOneCall) {
  const Bytes data = SampleBytes(27);
  EXPECT_EQ(EncryptedInPieces(kAlgorithmDes, data), Encrypted(kAlgorithmDes, "pw", data, 32));
  EXPECT_EQ(EncryptedInPieces(kAlgorithmRc4, data), Encrypted(kAlgorithmRc4, "pw", data, 27));
}

TEST_F(PasswordCipherTest, EffectiveBitsAreSetOnlyOnRequest) {
  PasswordKey plain = DerivedKey(kAlgorithmRc2);
  EXPECT_EQ(journal.Count("CryptSetKeyParam"), 0U);

  PasswordKey old;
  EXPECT_EQ(old.Derive(context, {kAlgorithmMd5, kAlgorithmRc2, BytesOf("pw"), 40}),
            CipherStep::Done);
  EXPECT_EQ(journal.Count("CryptSetKeyParam"), 1U);

  Bytes one = SampleBytes(8);
  Bytes other = one;
  std::uint32_t length = 8;
  EXPECT_EQ(plain.Transform(CipherDirection::Encrypt, one, length, false), CipherStep::Done);
  EXPECT_EQ(old.Transform(CipherDirection::Encrypt, other, length, false), CipherStep::Done);
  EXPECT_NE(one, other);
}

TEST_F(PasswordCipherTest, EffectiveBitsThatAreRefusedFailTheDerivation) {
  {
    PasswordKey tooMany;
    EXPECT_EQ(tooMany.Derive(context, {kAlgorithmMd5, kAlgorithmRc2, BytesOf("pw"), 2000}),
              CipherStep::DeriveKey);
    PasswordKey otherCipher;
    EXPECT_EQ(otherCipher.Derive(context, {kAlgorithmMd5, kAlgorithmDes, BytesOf("pw"), 40}),
              CipherStep::DeriveKey);
  }
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_F(PasswordCipherTest, APaddedBlockMustFitTheBuffer) {
  const Bytes data = SampleBytes(8);
  EXPECT_EQ(Encrypted(kAlgorithmDes, "pw", data, 15), Bytes());
  EXPECT_EQ(Encrypted(kAlgorithmDes, "pw", data, 16).size(), 16U);
}

TEST_F(PasswordCipherTest, DestroysTheHashDirectlyAfterTheDerivation) {
  const PasswordKey key = DerivedKey(kAlgorithmRc4);
  EXPECT_THAT(
      journal.All(),
      ElementsAre(calls::CreateHash(0x8003).Makes(HashNo(1)), calls::HashData(1, BytesOf("pw")),
                  calls::DeriveKey(0x6801, 1).Makes(KeyNo(1)), calls::DestroyHash(1)));
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1), KeyNo(1)));
}

TEST_F(PasswordCipherTest, ClosesAllHandlesOnDestruction) {
  { const PasswordKey key = DerivedKey(kAlgorithmRc4, ""); }
  EXPECT_EQ(journal.All().back(), calls::DestroyKey(1));
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
}

TEST_F(PasswordCipherTest, AnEmptyKeyClosesNothing) {
  { const PasswordKey key; }
  EXPECT_THAT(journal.All(), IsEmpty());
}

TEST_F(PasswordCipherTest, AKeyProcessesSeveralMessagesInBothDirections) {
  for (const provider::AlgorithmId cipher : {kAlgorithmDes, kAlgorithmRc4}) {
    PasswordKey key = DerivedKey(cipher);
    for (const std::size_t size : {20U, 8U, 20U}) {
      const Bytes data = SampleBytes(size);
      const Bytes encrypted = Run(key, CipherDirection::Encrypt, data, size + 8);
      EXPECT_EQ(encrypted, Encrypted(cipher, "pw", data, size + 8));
      EXPECT_EQ(Run(key, CipherDirection::Decrypt, encrypted, encrypted.size()), data);
    }
  }
}

TEST_F(PasswordCipherTest, AMovedKeyIsClosedOnceByItsLastOwner) {
  const Bytes data = SampleBytes(20);
  {
    PasswordKey first = DerivedKey(kAlgorithmDes);
    PasswordKey second = std::move(first);
    std::vector<PasswordKey> keys;
    keys.push_back(std::move(second));
    EXPECT_EQ(Run(keys.front(), CipherDirection::Encrypt, data, 24).size(), 24U);
    EXPECT_EQ(journal.Count("CryptDestroyKey"), 0U);
  }
  EXPECT_EQ(journal.Count("CryptDestroyKey"), 1U);
}

TEST_F(PasswordCipherTest, ReturnsTheStepThatFailed) {
  const std::map<std::string, CipherStep> steps{{"CryptCreateHash", CipherStep::CreateHash},
                                                {"CryptHashData", CipherStep::HashData},
                                                {"CryptDeriveKey", CipherStep::DeriveKey}};
  for (const auto& [call, step] : steps) {
    provider.FailAt(call, 1);
    {
      PasswordKey key;
      EXPECT_EQ(key.Derive(context, {kAlgorithmMd5, kAlgorithmRc4, BytesOf("pw")}), step);
    }
    EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
  }
}

TEST_F(PasswordCipherTest, ReturnsCipherWhenTheCipherFails) {
  PasswordKey key = DerivedKey(kAlgorithmDes);
  Bytes data = SampleBytes(9);
  std::uint32_t length = 9;
  EXPECT_EQ(key.Transform(CipherDirection::Decrypt, data, length), CipherStep::Cipher);
  EXPECT_EQ(length, 9U);
  EXPECT_EQ(key.Transform(CipherDirection::Encrypt, data, length), CipherStep::Cipher);
}

TEST_F(PasswordCipherTest, AFaultReachesTheCallerAndLeavesNoHandle) {
  for (const char* call : {"CryptCreateHash", "CryptHashData", "CryptDeriveKey"}) {
    provider.ThrowAt(call, 1, Fault(FaultNumber::Overflow));
    const auto derive = [this] {
      PasswordKey key;
      return key.Derive(context, {kAlgorithmMd5, kAlgorithmRc4, BytesOf("pw")});
    };
    EXPECT_EQ(FaultOf(derive), 6);
    EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1)));
  }
}

}  // namespace
}  // namespace latchkey::test
