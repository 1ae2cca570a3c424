// Settings that ciphertexts may have been made with.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "crypto/engine/derived_key.h"
#include "provider/block_size.h"

namespace latchkey {

// The parts of a ciphertext that are enough to identify its settings.
struct CiphertextSample {
  // A longer head would not give a surer answer.
  static constexpr std::size_t kHeadLength = std::size_t{1} << 16;
  // The last block and the one it is chained to.
  static constexpr std::size_t kTailLength = 2 * provider::kBlockSize;

  std::span<const std::uint8_t> head;  // the first bytes, at most kHeadLength
  std::span<const std::uint8_t> tail;  // the last bytes, at most kTailLength
  std::uint64_t length = 0;            // of the whole ciphertext

  [[nodiscard]] static CiphertextSample Of(std::span<const std::uint8_t> ciphertext) noexcept;
  [[nodiscard]] bool IsWhole() const noexcept { return length == head.size(); }
};

// Settings that fit, with the evidence for them.
struct Candidate {
  std::vector<KeySettings> settings;  // all that give this key; they differ in the provider
  std::optional<unsigned> padding;    // bytes of padding of the first sample; nothing for RC4
  double evidenceBits = 0;
  double probability = 0;
};

struct Candidates {
  std::vector<Candidate> fitting;  // the most probable first
  std::size_t tried = 0;           // number of different keys
  double noneProbability = 1;      // that none of the tried settings is right
};

// Decrypts samples of the same settings and password under every provider, hash and cipher; RC2
// also with the 40 effective bits of Windows 2000 and earlier.
//
// - Settings of a block cipher fit if the padding of every sample is well-formed. Settings of RC4
//   fit if the plaintexts look more like data than like random bytes.
// - Evidence: the base-2 logarithm of the ratio of two probabilities of the result, under the right
//   key and under a wrong one, which gives random bytes. For each sample it is TextEvidence of the
//   plaintext, plus 8 p - 3 for p bytes of padding: with the right key each p from 1 to 8 is
//   equally likely, and a wrong one gives those bytes once in 256^p.
// - Probability: follows by Bayes' rule. The prior is one half for "none of them"; the tried keys
//   have equal shares of the other half.
[[nodiscard]] Candidates FindCandidates(std::span<const CiphertextSample> samples,
                                        std::span<const std::uint8_t> password);

}  // namespace latchkey
