// Keys for whole messages and for sessions.
#include "crypto/engine/derived_key.h"

#include <gtest/gtest.h>

#include "tests/crypto/engine/whole_message.h"
#include "tests/support/bytes.h"
#include "tests/support/faulty_provider.h"

namespace latchkey::test {
namespace {

constexpr std::int32_t kMd5 = 1;
constexpr std::int32_t kRc4 = 1;
constexpr std::int32_t kRc2 = 2;
constexpr std::int32_t kDes = 3;
constexpr std::int32_t k3Des = 4;
constexpr std::int32_t k3Des112 = 5;

// The location of the check that failed, 0 for none.
int LocationOf(const KeySettings& settings, const CipherSites& sites = kEncryptionSites) {
  DerivedKey key;
  const CheckSite* const failed = key.Derive(settings, BytesOf("pw"), sites);
  return failed != nullptr ? failed->location : 0;
}

TEST(KeySettingsTest, OnlyABlockCipherMissesBytesToWholeBlocks) {
  for (const auto& [length, missing] : {std::pair{0U, 0U}, {1U, 7U}, {8U, 0U}, {15U, 1U}}) {
    EXPECT_EQ(KeySettings({kMd5, kDes}).MissingBytes(length), missing) << length;
    EXPECT_EQ(KeySettings({kMd5, kRc4}).MissingBytes(length), 0) << length;
  }
}

TEST(KeySettingsTest, AnyProviderIsTheBaseOneUnlessItLacksTheCipherOrTheBits) {
  for (const std::int32_t cipher : {kRc4, kRc2, kDes}) {
    EXPECT_FALSE(KeySettings({kMd5, cipher}).UsesEnhancedProvider()) << cipher;
  }
  EXPECT_TRUE(KeySettings({kMd5, k3Des}).UsesEnhancedProvider());
  EXPECT_TRUE(KeySettings({kMd5, k3Des112}).UsesEnhancedProvider());
  EXPECT_FALSE(KeySettings({kMd5, kRc4, ProviderChoice::Any, 56}).UsesEnhancedProvider());
  EXPECT_TRUE(KeySettings({kMd5, kRc4, ProviderChoice::Any, 64}).UsesEnhancedProvider());
  EXPECT_TRUE(KeySettings({kMd5, kRc2, ProviderChoice::Any, 0, 40}).UsesEnhancedProvider());
  EXPECT_TRUE(KeySettings({kMd5, kRc4, ProviderChoice::Enhanced}).UsesEnhancedProvider());
  EXPECT_FALSE(KeySettings({kMd5, k3Des, ProviderChoice::Base}).UsesEnhancedProvider());
}

TEST(DerivedKeyTest, SettingsThatNoProviderHasFailAtTheirCheck) {
  const auto base = ProviderChoice::Base;
  EXPECT_EQ(LocationOf({0, kDes}), 718);
  EXPECT_EQ(LocationOf({65537, kDes}), 718);
  EXPECT_EQ(LocationOf({kMd5, 6}), 719);
  EXPECT_EQ(LocationOf({kMd5, 65537}), 719);
  EXPECT_EQ(LocationOf({kMd5, k3Des, base}), 719);
  EXPECT_EQ(LocationOf({kMd5, k3Des, base}, kDecryptionSites), 712);
}

TEST(DerivedKeyTest, BitsThatAProviderRefusesFailAsDerivingTheKey) {
  const auto any = ProviderChoice::Any;
  for (const std::uint32_t bits : {1U, 39U, 47U, 136U, 65536U, 65536U + 40U, 0xFFFFFFFFU}) {
    EXPECT_EQ(LocationOf({kMd5, kRc4, any, bits}), 723) << bits;
  }
  EXPECT_EQ(LocationOf({kMd5, kRc4, ProviderChoice::Base, 64}), 723);
  for (const std::int32_t cipher : {kDes, k3Des, k3Des112}) {
    EXPECT_EQ(LocationOf({kMd5, cipher, any, 56}), 723) << cipher;
    EXPECT_EQ(LocationOf({kMd5, cipher, any, 0, 40}), 723) << cipher;
  }
  EXPECT_EQ(LocationOf({kMd5, kRc2, any, 0, 1025}), 723);
  EXPECT_EQ(LocationOf({kMd5, kRc2, ProviderChoice::Base, 0, 41}), 723);
}

TEST(DerivedKeyTest, EffectiveBitsFollowTheKeyBitsUnlessGiven) {
  DerivedKey followed;
  ASSERT_EQ(followed.Derive({kMd5, kRc2, ProviderChoice::Any, 80}, BytesOf("pw")), nullptr);
  DerivedKey given;
  ASSERT_EQ(given.Derive({kMd5, kRc2, ProviderChoice::Any, 80, 80}, BytesOf("pw")), nullptr);
  DerivedKey other;
  ASSERT_EQ(other.Derive({kMd5, kRc2, ProviderChoice::Any, 80, 40}, BytesOf("pw")), nullptr);
  const Bytes zeros(8);
  const Bytes expected = Whole(followed, CipherDirection::Encrypt, zeros);
  ASSERT_EQ(expected.size(), 16U);
  EXPECT_EQ(Whole(given, CipherDirection::Encrypt, zeros), expected);
  EXPECT_NE(Whole(other, CipherDirection::Encrypt, zeros), expected);
}

TEST(DerivedKeyTest, TheRoomForEncryptionIsTheCiphertextsLength) {
  for (const std::int32_t cipher : {kRc4, kDes}) {
    DerivedKey key;
    ASSERT_EQ(key.Derive({kMd5, cipher}, BytesOf("pw")), nullptr);
    for (std::size_t length = 0; length < 20; ++length) {
      EXPECT_EQ(Whole(key, CipherDirection::Encrypt, Bytes(length)).size(),
                key.RoomFor(CipherDirection::Encrypt, length));
    }
  }
}

// A session never moves the key that messages start from.
TEST(DerivedKeyTest, MessagesAndSessionsDoNotDisturbEachOther) {
  DerivedKey key;
  ASSERT_EQ(key.Derive({kMd5, kRc4}, BytesOf("pw")), nullptr);
  const Bytes expected = Whole(key, CipherDirection::Encrypt, Bytes(20));
  ASSERT_EQ(expected.size(), 20U);
  for (int round = 0; round < 2; ++round) {
    PasswordKey session = key.NewSession();
    ASSERT_TRUE(session.HasKey());
    Bytes part(13);
    std::uint32_t length = 13;
    EXPECT_EQ(session.Transform(CipherDirection::Encrypt, part, length, false), CipherStep::Done);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), expected.begin()));
    EXPECT_EQ(Whole(key, CipherDirection::Encrypt, Bytes(20)), expected);
  }
}

// Each call of the provider fails in turn: the key fails at a check, and no handle stays open.
TEST(DerivedKeyTest, NoHandleIsLeftWhenAProviderCallFails) {
  FaultyProvider provider;
  provider::ReplaceSharedCryptoProvider(&provider);
  int failed = 0;
  for (int call = 1;; ++call) {
    provider.FailCall(call, FaultyProvider::Manner::Refuse);
    DerivedKey key;
    const CheckSite* const check =
        key.Derive({kMd5, kRc2, ProviderChoice::Enhanced, 0, 40}, BytesOf("pw"));
    const bool refused = !provider.FailurePending();
    provider.FailCall(0, FaultyProvider::Manner::Refuse);
    if (!refused) break;
    failed += check != nullptr ? 1 : 0;
  }
  EXPECT_EQ(failed, 5) << "opening, hash, password, key and its bits";
  EXPECT_EQ(provider.OpenHandles(), 0);
  provider::ReplaceSharedCryptoProvider(nullptr);
}

}  // namespace
}  // namespace latchkey::test
