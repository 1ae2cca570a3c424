// CryptSetKeyParam of the platform's own provider, for RC2's effective key length. The codes are
// those of Wine; the Linux implementation must return the same.
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/provider_session.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in its interface

class EffectiveKeyLengthTest : public testing::Test {
 protected:
  static std::uint32_t Set(HCRYPTKEY key, std::uint32_t bits, std::uint32_t flags = 0,
                           std::uint32_t parameter = kEffectiveKeyLengthParameter) {
    return ErrorOf(SystemCryptoProvider().CryptSetKeyParam(
        key, parameter, reinterpret_cast<const std::uint8_t*>(&bits), flags));
  }

  static HCRYPTKEY KeyOf(const ProviderSession& session, AlgorithmId cipher) {
    return session.KeyOf(cipher, kAlgorithmMd5, Bytes{'a', 'b', 'c'});
  }

  // The encryption of a first block of zeros.
  static Bytes FirstBlock(HCRYPTKEY key) { return Encrypt(key, false, Bytes(8), 8).data; }

  ProviderSession base{kBaseProviderName};
  ProviderSession enhanced{kEnhancedProviderName};
};

TEST_F(EffectiveKeyLengthTest, TheEnhancedProviderTakes1To1024Bits) {
  const HCRYPTKEY key = KeyOf(enhanced, kAlgorithmRc2);
  for (const std::uint32_t bits : {1U, 39U, 40U, 128U, 129U, 1024U}) EXPECT_EQ(Set(key, bits), 0U);
  for (const std::uint32_t bits : {0U, 1025U, 0xFFFFFFFFU}) {
    EXPECT_EQ(Set(key, bits), kErrorBadData) << bits;
  }
}

TEST_F(EffectiveKeyLengthTest, TheBaseProviderTakes40BitsOnly) {
  const HCRYPTKEY key = KeyOf(base, kAlgorithmRc2);
  const Bytes before = FirstBlock(KeyOf(base, kAlgorithmRc2));
  EXPECT_EQ(Set(key, 40), 0U);
  for (const std::uint32_t bits : {0U, 1U, 39U, 41U, 128U, 1024U, 1025U}) {
    EXPECT_EQ(Set(key, bits), kErrorBadData) << bits;
  }
  EXPECT_EQ(FirstBlock(key), before);
}

// Measured on Wine 8.0: password "abc", MD5, a block of zeros.
TEST_F(EffectiveKeyLengthTest, TheBitsChangeTheCipher) {
  struct Row {
    std::uint32_t bits;
    Bytes start;
  };
  const std::vector<Row> rows{{1, {0x21, 0x99, 0x11, 0x47}},   {40, {0xA6, 0x58, 0x05, 0x32}},
                              {41, {0xB2, 0xFB, 0xC8, 0x57}},  {64, {0x7B, 0xE9, 0x9C, 0x6B}},
                              {127, {0x17, 0x75, 0xEB, 0x46}}, {128, {0x13, 0x68, 0x9E, 0x66}},
                              {129, {0x89, 0x8B, 0x46, 0x36}}, {1024, {0x26, 0xC3, 0x70, 0xEC}}};
  for (const Row& row : rows) {
    const HCRYPTKEY key = KeyOf(enhanced, kAlgorithmRc2);
    EXPECT_EQ(Set(key, row.bits), 0U);
    Bytes block = FirstBlock(key);
    block.resize(row.start.size());
    EXPECT_EQ(block, row.start) << row.bits;
  }
}

TEST_F(EffectiveKeyLengthTest, SettingThemResetsTheKey) {
  const HCRYPTKEY fresh = KeyOf(enhanced, kAlgorithmRc2);
  EXPECT_EQ(Set(fresh, 40), 0U);
  const HCRYPTKEY used = KeyOf(enhanced, kAlgorithmRc2);
  static_cast<void>(FirstBlock(used));
  EXPECT_EQ(Set(used, 40), 0U);
  EXPECT_EQ(FirstBlock(used), FirstBlock(fresh));
}

TEST_F(EffectiveKeyLengthTest, OtherCiphersHaveNone) {
  for (const AlgorithmId cipher :
       {kAlgorithmRc4, kAlgorithmDes, kAlgorithm3Des, kAlgorithm3Des112}) {
    const HCRYPTKEY key = KeyOf(enhanced, cipher);
    for (const std::uint32_t bits : {0U, 40U, 128U}) EXPECT_EQ(Set(key, bits), kErrorBadType);
  }
}

TEST_F(EffectiveKeyLengthTest, WrongCallsAreRefused) {
  const HCRYPTKEY key = KeyOf(enhanced, kAlgorithmRc2);
  EXPECT_EQ(Set(key, 40, 1), kErrorBadFlags);
  EXPECT_EQ(Set(key, 40, 0, 999), kErrorBadType);
  EXPECT_EQ(ErrorOf(SystemCryptoProvider().CryptSetKeyParam(key, kEffectiveKeyLengthParameter,
                                                            nullptr, 0)),
            kErrorInvalidParameter);
  EXPECT_TRUE(SystemCryptoProvider().CryptDestroyKey(key));
  EXPECT_EQ(Set(key, 40), kErrorInvalidParameter);
}

}  // namespace
}  // namespace latchkey::test
