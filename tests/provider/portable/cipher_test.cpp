#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "provider/portable/cipher.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "tests/support/linux/reference_cipher.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the namespace under test

constexpr std::array kCiphers{kAlgorithmRc4, kAlgorithmRc2, kAlgorithmDes, kAlgorithm3Des,
                              kAlgorithm3Des112};

class KernelCipherTest : public ::testing::TestWithParam<AlgorithmId> {
 protected:
  void SetUp() override {
    const Bytes bytes = random.Some(ReferenceKeySize(GetParam()));
    key.assign(bytes.begin(), bytes.end());
    cipher = MakeCipher(GetParam(), key, static_cast<unsigned>(8 * key.size()));
    state.batch = std::make_unique<std::uint8_t[]>(kLargestBatch);
  }

  [[nodiscard]] Bytes Reference(const Bytes& plaintext) const {
    return ReferenceEncryption(GetParam(), Bytes(key.begin(), key.end()), Bytes(8), plaintext);
  }

  // Lengths from nothing to several batches of the widest kernel; whole blocks for block ciphers.
  [[nodiscard]] std::size_t RandomLength() {
    const std::size_t length = random.Below(std::size_t{1} << random.Below(15));
    return cipher->IsBlockCipher() ? length / 8 * 8 : length;
  }

  // Processes the data in pieces at any address.
  template <class Work>
  Bytes InPieces(const Bytes& data, Work work) {
    Bytes memory(random.Below(64));
    const std::size_t offset = memory.size();
    memory.insert(memory.end(), data.begin(), data.end());
    std::span<std::uint8_t> rest = std::span(memory).subspan(offset);
    while (!rest.empty()) {
      const std::size_t piece = std::min(RandomLength(), rest.size());
      work(rest.first(piece));
      rest = rest.subspan(piece);
    }
    return {memory.begin() + static_cast<std::ptrdiff_t>(offset), memory.end()};
  }

  RandomSource random{20262};
  WipedBytes key;
  std::shared_ptr<const Cipher> cipher;
  CipherState state;
};

TEST_P(KernelCipherTest, EncryptionInPiecesEqualsTheReferenceInOneCall) {
  for (int round = 0; round < 60; ++round) {
    const Bytes plaintext = random.Some(RandomLength());
    cipher->Start(state);
    const Bytes result = InPieces(plaintext, [&](auto piece) { cipher->Encrypt(piece, state); });
    ASSERT_TRUE(result == Reference(plaintext)) << "length " << plaintext.size();
  }
}

TEST_P(KernelCipherTest, DecryptionInPiecesGivesTheReferencesPlaintext) {
  for (int round = 0; round < 200; ++round) {
    const Bytes plaintext = random.Some(RandomLength());
    cipher->Start(state);
    const Bytes result =
        InPieces(Reference(plaintext), [&](auto piece) { cipher->Decrypt(piece, state); });
    ASSERT_TRUE(result == plaintext) << "length " << plaintext.size();
  }
}

// Every number of blocks up to two of the largest batches: block by block, part of a batch, both.
TEST_P(KernelCipherTest, DecryptionOfEveryLengthGivesTheReferencesPlaintext) {
  const Bytes plaintext = random.Some(8200);
  const Bytes ciphertext = Reference(plaintext);
  for (std::size_t length = 0; length <= plaintext.size(); length += 8) {
    Bytes data(ciphertext.begin(), ciphertext.begin() + static_cast<std::ptrdiff_t>(length));
    cipher->Start(state);
    cipher->Decrypt(data, state);
    ASSERT_TRUE(std::equal(data.begin(), data.end(), plaintext.begin())) << "length " << length;
  }
}

// Both directions share one feedback block: encryption continues from the last decrypted ciphertext
// block, with any kernel.
TEST_P(KernelCipherTest, EncryptionContinuesAfterDecryption) {
  const Bytes plaintext = random.Some(5000);
  const Bytes ciphertext = Reference(plaintext);
  for (const std::size_t length : {8U, 504U, 1024U, 4096U, 4600U, 4992U}) {
    Bytes data(ciphertext.begin(), ciphertext.begin() + static_cast<std::ptrdiff_t>(length));
    Bytes rest(plaintext.begin() + static_cast<std::ptrdiff_t>(length), plaintext.end());
    cipher->Start(state);
    cipher->Decrypt(data, state);
    cipher->Encrypt(rest, state);
    ASSERT_TRUE(std::equal(rest.begin(), rest.end(), ciphertext.end() - std::ssize(rest)))
        << length;
  }
}

INSTANTIATE_TEST_SUITE_P(Ciphers, KernelCipherTest, ::testing::ValuesIn(kCiphers));

}  // namespace
}  // namespace latchkey::test
