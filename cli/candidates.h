// Settings that a ciphertext may have been made with.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cli/cipher_settings.h"
#include "cli/ciphertext_sample.h"

namespace latchkey::cli {

// Settings that fit, with the evidence for them.
struct Candidate {
  std::vector<CipherSettings> settings;  // all settings of this key; they differ in the provider
  std::optional<unsigned> padding;       // bytes of padding; nothing for RC4
  double evidenceBits = 0;
  double probability = 0;
};

struct Candidates {
  std::vector<Candidate> fitting;  // the most probable first
  std::size_t tried = 0;           // different keys
  double noneProbability = 1;      // that none of the tried settings is right
};

// Decrypts the sample under every provider, hash and cipher, RC2 also with the 40 effective bits
// of Windows 2000 and before.
//
// A block cipher's settings fit if the padding is well-formed, RC4's if the plaintext looks more
// like data than like random bytes. The evidence for settings is the base-2 logarithm of the ratio
// of two probabilities of the result: under the right key, and under a wrong one, which gives
// random bytes. It is TextEvidence of the plaintext plus 8 p - 3 for p bytes of padding (with the
// right key each p from 1 to 8 is equally likely; a wrong one gives those bytes once in 256^p). The
// probability follows by Bayes' rule. The prior is one half for "none of them", and the other half
// in equal shares for the tried keys.
[[nodiscard]] Candidates FindCandidates(const CiphertextSample& sample,
                                        std::span<const std::uint8_t> password);

}  // namespace latchkey::cli
