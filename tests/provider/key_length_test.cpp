// CryptDeriveKey with a length in its flags. The codes and keys are those of Wine; the Linux
// implementation must return the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/provider_session.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in the seam

constexpr Bytes::value_type kPassword[] = {'P', 'N', 'E', 'M', 'A', 'I', 'L'};

class KeyLengthTest : public testing::Test {
 protected:
  // The code of the failure, or 0 and the key.
  static std::uint32_t Derive(const ProviderSession& session, AlgorithmId cipher,
                              std::uint32_t bits, HCRYPTKEY& key, std::uint32_t otherFlags = 0) {
    return ErrorOf(SystemCryptoProvider().CryptDeriveKey(
        session.Handle(), cipher, session.HashOf(kAlgorithmMd5, kPassword),
        bits << kKeyLengthShift | otherFlags, &key));
  }

  // The encryption of eight zero bytes without padding.
  static Bytes FirstBlock(const ProviderSession& session, AlgorithmId cipher, std::uint32_t bits) {
    HCRYPTKEY key = 0;
    EXPECT_EQ(Derive(session, cipher, bits, key), 0U) << bits;
    return Encrypt(key, false, Bytes(8), 8).data;
  }

  ProviderSession base{kBaseProviderName};
  ProviderSession enhanced{kEnhancedProviderName};
};

// A ciphertext that a program on Windows made: 80 bits, no salt, 80 effective bits.
TEST_F(KeyLengthTest, EightyBitsOfRc2ReadDataFromWindows) {
  HCRYPTKEY key = 0;
  ASSERT_EQ(Derive(enhanced, kAlgorithmRc2, 80, key), 0U);
  const CipherResult plaintext =
      Decrypt(key, true, {0xDC, 0x3D, 0x96, 0x23, 0x29, 0xDD, 0x1B, 0x2F});
  EXPECT_EQ(plaintext.data, (Bytes{0x42, 0x46, 0x30, 0x41, 0x43, 0x34, 0x31}));
}

TEST_F(KeyLengthTest, FortyBitsAreTheBaseProvidersKeyInBoth) {
  for (const AlgorithmId cipher : {kAlgorithmRc4, kAlgorithmRc2}) {
    const Bytes expected = FirstBlock(base, cipher, 0);
    EXPECT_EQ(FirstBlock(base, cipher, 40), expected);
    EXPECT_EQ(FirstBlock(enhanced, cipher, 40), expected);
  }
}

TEST_F(KeyLengthTest, A128BitKeyIsTheEnhancedProvidersDefault) {
  for (const AlgorithmId cipher : {kAlgorithmRc4, kAlgorithmRc2}) {
    EXPECT_EQ(FirstBlock(enhanced, cipher, 128), FirstBlock(enhanced, cipher, 0));
  }
}

TEST_F(KeyLengthTest, EachLengthGivesAnotherKeyThatBothProvidersShare) {
  for (const AlgorithmId cipher : {kAlgorithmRc4, kAlgorithmRc2}) {
    std::vector<Bytes> blocks;
    for (std::uint32_t bits = 40; bits <= 128; bits += 8) {
      const Bytes block = FirstBlock(enhanced, cipher, bits);
      EXPECT_EQ(std::count(blocks.begin(), blocks.end(), block), 0) << bits;
      if (bits <= 56) {
        EXPECT_EQ(FirstBlock(base, cipher, bits), block) << bits;
      }
      blocks.push_back(block);
    }
  }
}

TEST_F(KeyLengthTest, OtherLengthsAreRefused) {
  HCRYPTKEY key = 0;
  for (const AlgorithmId cipher : {kAlgorithmRc4, kAlgorithmRc2}) {
    for (const std::uint32_t bits : {8U, 32U, 41U, 136U, 1024U, 65535U}) {
      EXPECT_EQ(Derive(enhanced, cipher, bits, key), kErrorBadData) << bits;
    }
    EXPECT_EQ(Derive(base, cipher, 64, key), kErrorBadData);
    EXPECT_EQ(Derive(base, cipher, 128, key), kErrorBadData);
  }
}

}  // namespace
}  // namespace latchkey::test
