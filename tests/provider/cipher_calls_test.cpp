// CryptEncrypt and CryptDecrypt of the platform's own provider: lengths, padding, and state between
// calls.
#include <gtest/gtest.h>

#include <numeric>

#include "provider/block_size.h"
#include "tests/support/provider_session.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in its interface

constexpr std::uint32_t kBlock = kBlockSize;

Bytes Counting(std::size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  return bytes;
}

Bytes Joined(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Bytes Part(const Bytes& bytes, std::ptrdiff_t from, std::ptrdiff_t to) {
  return {bytes.begin() + from, bytes.begin() + to};
}

CipherResult Failed(std::uint32_t error, std::uint32_t length) { return {error, length, {}}; }

class CipherCallsTest : public ::testing::TestWithParam<AlgorithmId> {
 protected:
  [[nodiscard]] HCRYPTKEY NewKey(AlgorithmId cipher = GetParam()) const {
    return session.KeyOf(cipher, kAlgorithmMd5, Bytes{'a', 'b', 'c'});
  }

  // Encrypts all of `plaintext` under a fresh key.
  [[nodiscard]] Bytes Ciphertext(const Bytes& plaintext) const {
    const auto room = static_cast<std::uint32_t>(plaintext.size()) + kBlock;
    return Encrypt(NewKey(), true, plaintext, room).data;
  }

  ProviderSession session{kEnhancedProviderName};
};

using BlockCipherTest = CipherCallsTest;

INSTANTIATE_TEST_SUITE_P(All, BlockCipherTest,
                         ::testing::Values(kAlgorithmRc2, kAlgorithmDes, kAlgorithm3Des,
                                           kAlgorithm3Des112));

TEST_P(BlockCipherTest, TheFinalBlockIsPaddedToTheNextMultipleOfEight) {
  for (std::uint32_t n = 0; n <= 24; ++n) {
    const std::uint32_t padded = (n / kBlock + 1) * kBlock;
    const CipherResult result = Encrypt(NewKey(), true, Counting(n), padded);
    EXPECT_EQ(result.error, 0U) << n;
    EXPECT_EQ(result.length, padded) << n;
    EXPECT_EQ(Decrypt(NewKey(), true, result.data), (CipherResult{0, n, Counting(n)})) << n;
  }
}

TEST_P(BlockCipherTest, ABufferOfTwiceTheLengthIsTooShortForUpToThreeBytes) {
  for (std::uint32_t n = 0; n <= 12; ++n) {
    const CipherResult result = Encrypt(NewKey(), true, Counting(n), 2 * n);
    EXPECT_EQ(result.error, n <= 3 ? kErrorMoreData : 0U) << n;
    EXPECT_EQ(result.length, (n / kBlock + 1) * kBlock) << n;
  }
}

TEST_P(BlockCipherTest, ATooShortBufferKeepsThePlaintextAndTheState) {
  const HCRYPTKEY key = NewKey();
  Bytes buffer = Counting(8);
  std::uint32_t length = 8;
  EXPECT_EQ(
      ErrorOf(SystemCryptoProvider().CryptEncrypt(key, 0, true, 0, buffer.data(), &length, 15)),
      kErrorMoreData);
  EXPECT_EQ(buffer, Counting(8));
  EXPECT_EQ(Encrypt(key, true, Counting(8), 16).data, Ciphertext(Counting(8)));
}

TEST_P(BlockCipherTest, OnlyWholeBlocksDecrypt) {
  for (std::uint32_t n = 1; n < 24; ++n) {
    if (n % kBlock == 0) continue;
    EXPECT_EQ(Decrypt(NewKey(), true, Counting(n)), Failed(kErrorBadData, n)) << n;
    EXPECT_EQ(Decrypt(NewKey(), false, Counting(n)), Failed(kErrorBadData, n)) << n;
  }
}

TEST_P(BlockCipherTest, NoBytesHaveNoPaddingToDecrypt) {
  EXPECT_EQ(Decrypt(NewKey(), true, {}), Failed(kErrorBadData, 0));
  std::uint32_t length = 0;
  EXPECT_EQ(ErrorOf(SystemCryptoProvider().CryptDecrypt(NewKey(), 0, true, 0, nullptr, &length)),
            kErrorBadData);
}

// The plaintext of the last block is chosen freely by encrypting it without padding.
TEST_P(BlockCipherTest, PaddingIsOneToEightBytesOfItsOwnCount) {
  for (unsigned last = 0; last <= 255; ++last) {
    Bytes block(kBlock, static_cast<std::uint8_t>(last));
    const Bytes ciphertext = Encrypt(NewKey(), false, block, kBlock).data;
    const CipherResult result = Decrypt(NewKey(), true, ciphertext);
    EXPECT_EQ(result.error, last >= 1 && last <= kBlock ? 0U : kErrorBadData) << last;
    EXPECT_EQ(result.length, result.error == 0 ? kBlock - last : kBlock) << last;
  }
}

TEST_P(BlockCipherTest, OneWrongByteOfThePaddingIsBadDataAndOneBeforeItIsNot) {
  for (std::uint8_t count = 1; count <= kBlock; ++count) {
    for (std::size_t wrong = 0; wrong < kBlock; ++wrong) {
      Bytes block(kBlock, count);
      block[wrong] ^= 0x80;
      const Bytes ciphertext = Encrypt(NewKey(), false, block, kBlock).data;
      const bool inPadding = wrong + count >= kBlock;
      EXPECT_EQ(Decrypt(NewKey(), true, ciphertext).error, inPadding ? kErrorBadData : 0U)
          << +count << ' ' << wrong;
    }
  }
}

TEST_P(BlockCipherTest, DataInPartsGivesTheSameBytesAsInOneCall) {
  const Bytes plaintext = Counting(40);
  const Bytes ciphertext = Ciphertext(plaintext);
  const HCRYPTKEY key = NewKey();
  Bytes parts = Encrypt(key, false, Part(plaintext, 0, 8), 8).data;
  parts = Joined(parts, Encrypt(key, false, {}, 0).data);
  parts = Joined(parts, Encrypt(key, false, Part(plaintext, 8, 24), 16).data);
  parts = Joined(parts, Encrypt(key, true, Part(plaintext, 24, 40), 24).data);
  EXPECT_EQ(parts, ciphertext);

  Bytes back = Decrypt(key, false, Part(ciphertext, 0, 16)).data;
  back = Joined(back, Decrypt(key, false, {}).data);
  back = Joined(back, Decrypt(key, true, Part(ciphertext, 16, 48)).data);
  EXPECT_EQ(back, plaintext);
}

TEST_P(BlockCipherTest, LongDataIsDecryptedUnchanged) {
  const Bytes plaintext = Counting(5003);
  EXPECT_EQ(Decrypt(NewKey(), true, Ciphertext(plaintext)).data, plaintext);
}

TEST_P(BlockCipherTest, OnlyWholeBlocksEncryptBeforeTheFinalCall) {
  EXPECT_EQ(Encrypt(NewKey(), false, Counting(3), 8), Failed(kErrorBadData, 3));
  EXPECT_EQ(Encrypt(NewKey(), false, Counting(9), 16), Failed(kErrorBadData, 9));
  EXPECT_EQ(Encrypt(NewKey(), false, Counting(16), 8), Failed(kErrorMoreData, 16));
}

TEST_P(BlockCipherTest, AFinalCallResetsTheKey) {
  const Bytes plaintext = Counting(16);
  const Bytes ciphertext = Ciphertext(plaintext);
  const HCRYPTKEY key = NewKey();
  EXPECT_EQ(Encrypt(key, true, plaintext, 24).data, ciphertext);
  EXPECT_EQ(Encrypt(key, true, plaintext, 24).data, ciphertext);
  EXPECT_EQ(Decrypt(key, true, ciphertext).data, plaintext);
  EXPECT_EQ(Decrypt(key, true, ciphertext).data, plaintext);
}

TEST_P(BlockCipherTest, ADecryptionWithBadPaddingResetsTheKey) {
  const Bytes ciphertext = Ciphertext(Counting(16));
  const HCRYPTKEY key = NewKey();
  EXPECT_EQ(Decrypt(key, true, Part(ciphertext, 0, 8)), Failed(kErrorBadData, 8));
  EXPECT_EQ(Decrypt(key, true, ciphertext).data, Counting(16));
}

TEST_P(BlockCipherTest, BothDirectionsShareTheFeedback) {
  const Bytes ciphertext = Ciphertext(Counting(16));
  const HCRYPTKEY key = NewKey();
  EXPECT_EQ(Decrypt(key, false, Part(ciphertext, 0, 8)).data, Counting(8));
  EXPECT_EQ(Encrypt(key, false, Part(Counting(16), 8, 16), 8).data, Part(ciphertext, 8, 16));
}

class StreamCipherTest : public CipherCallsTest {
 protected:
  [[nodiscard]] HCRYPTKEY NewStream() const { return NewKey(kAlgorithmRc4); }
};

INSTANTIATE_TEST_SUITE_P(Rc4, StreamCipherTest, ::testing::Values(kAlgorithmRc4));

TEST_P(StreamCipherTest, AnyLengthIsKept) {
  for (std::uint32_t n = 0; n <= 20; ++n) {
    const CipherResult result = Encrypt(NewStream(), true, Counting(n), n);
    EXPECT_EQ(result.error, 0U) << n;
    EXPECT_EQ(result.length, n) << n;
    EXPECT_EQ(Decrypt(NewStream(), true, result.data), (CipherResult{0, n, Counting(n)})) << n;
  }
}

TEST_P(StreamCipherTest, NoBytesNeedNoBuffer) {
  std::uint32_t length = 0;
  EXPECT_TRUE(SystemCryptoProvider().CryptEncrypt(NewStream(), 0, true, 0, nullptr, &length, 0));
  EXPECT_TRUE(SystemCryptoProvider().CryptDecrypt(NewStream(), 0, true, 0, nullptr, &length));
  EXPECT_EQ(length, 0U);
}

TEST_P(StreamCipherTest, TheKeyStreamContinuesUntilTheFinalCallInBothDirections) {
  const Bytes zeros(15);
  const Bytes stream = Encrypt(NewStream(), true, zeros, 15).data;
  const HCRYPTKEY key = NewStream();
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Encrypt(key, false, Bytes(5), 5).data, Part(stream, 0, 5));
    EXPECT_EQ(Decrypt(key, false, Bytes(5)).data, Part(stream, 5, 10));
    EXPECT_EQ(Encrypt(key, true, Bytes(5), 5).data, Part(stream, 10, 15));
  }
}

}  // namespace
}  // namespace latchkey::test
