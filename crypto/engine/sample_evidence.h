// The evidence that ciphertexts give for a key.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "crypto/engine/derived_key.h"
#include "provider/block_size.h"

namespace latchkey {

// The parts of a ciphertext that identifying its settings requires.
struct CiphertextSample {
  // The most bytes of the beginning that are used; more would not make the answer more certain.
  static constexpr std::size_t kHeadLength = std::size_t{1} << 16;
  // The last block and the one it is chained to.
  static constexpr std::size_t kTailLength = 2 * provider::kBlockSize;

  std::span<const std::uint8_t> head;  // the beginning; everything if it has `length` bytes
  std::span<const std::uint8_t> tail;  // the last bytes, at most kTailLength
  std::uint64_t length = 0;            // of the ciphertext

  [[nodiscard]] static CiphertextSample Of(std::span<const std::uint8_t> ciphertext) noexcept;
};

// What several samples say about one key.
struct Evidence {
  double bits = 0;
  std::optional<unsigned> padding;  // bytes of padding of the first sample; nothing for RC4
  std::size_t restored = 0;         // samples whose trailing spaces were put back
  // Of several samples, those of 32 bytes or more that look like random bytes under a key of RC4,
  // which has no padding to check.
  std::size_t unlike = 0;
};

// Samples of the same key. Evidence is the base-2 logarithm of the ratio of two probabilities of
// what decryption gives: under the right key, and under a wrong one. A wrong key gives random
// bytes, but not always new ones, so these count only once:
//
// - Block ciphers decrypt equal ciphertext blocks to equal bytes, before the chaining.
// - RC4 xors every sample with the same bytes, so a wrong key gives the right plaintexts xored with
//   the same random bytes. At each position all 256 possible bytes are compared.
//
// Otherwise evidence is the sum over the samples of TextEvidence of the plaintext and, for a block
// cipher, of 8 p - 3 for p bytes of padding (with the right key each p from 1 to 8 is equally
// likely; a wrong one gives those bytes once in 256^p) and of -8 for each trailing space that was
// put back (a block ends in it once in 256).
//
// The samples must outlive the object. Immutable: any thread may use it.
class SampleSet {
 public:
  explicit SampleSet(std::span<const CiphertextSample> samples);

  // Nothing if the key does not fit: a block cipher's if the padding of a sample is malformed,
  // RC4's if the plaintexts look more like random bytes than like data.
  [[nodiscard]] std::optional<Evidence> Judge(const DerivedKey& key) const;

 private:
  // A sample of whole blocks.
  struct Blocks {
    std::span<const std::uint8_t> head;
    std::vector<std::uint8_t> restoredHead;  // `head`, if spaces were put back
    std::vector<std::uint8_t> tail;
    std::vector<bool> isNew;  // for each block of `head`
    bool isLastNew = false;
    bool isWhole = false;
    std::size_t missing = 0;  // spaces that were put back
  };

  // Positions that RC4's samples are compared at.
  static constexpr std::size_t kPositions = 256;

  [[nodiscard]] static Blocks BlocksOf(const CiphertextSample& sample, std::size_t longest);
  void CountPositions();
  [[nodiscard]] bool AddBlocks(const DerivedKey& key, const Blocks& blocks,
                               Evidence& evidence) const;
  [[nodiscard]] std::optional<Evidence> JudgeBlocks(const DerivedKey& key) const;
  [[nodiscard]] double StreamEvidence(const DerivedKey& key) const;
  [[nodiscard]] std::size_t CountUnlike(const DerivedKey& key) const;
  [[nodiscard]] double PositionsEvidence(const DerivedKey& key) const;

  std::span<const CiphertextSample> samples_;
  std::vector<Blocks> blocks_;
  // For each position of several samples, the evidence for each byte that RC4 may xor there.
  std::vector<std::array<double, 256>> positions_;
};

}  // namespace latchkey
