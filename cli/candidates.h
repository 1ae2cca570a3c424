// Which settings a ciphertext may have been made with.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cli/cipher_settings.h"
#include "cli/ciphertext_sample.h"

namespace latchkey::cli {

// Settings that fit, with what speaks for them.
struct Candidate {
  std::vector<CipherSettings> settings;  // all that give this one key; they differ in the provider
  std::optional<unsigned> padding;       // bytes of padding; nothing for RC4
  double evidenceBits = 0;
  double probability = 0;
};

struct Candidates {
  std::vector<Candidate> fitting;  // the most probable first
  std::size_t tried = 0;           // different keys
  double noneProbability = 1;      // that no settings that were tried are the right ones
};

// Decrypts the sample under every provider, hash and cipher, RC2 also with the 40 effective bits
// of Windows 2000 and before.
//
// A block cipher's settings fit when the padding is well-formed, RC4's when what comes out looks
// more like something kept than like chance. The evidence for settings is the base-2 logarithm of
// how much more probable the outcome is under the right key than under a wrong one, which makes
// random bytes: TextEvidence of the plaintext, and for p bytes of padding 8 p - 3 (the right key
// leaves each p from 1 to 8 equally often, a wrong one those bytes once in 256^p).
// The probability is Bayes' rule over that: at the start one half for "none of them" and the other
// half in equal shares for the keys that were tried.
[[nodiscard]] Candidates FindCandidates(const CiphertextSample& sample,
                                        std::span<const std::uint8_t> password);

}  // namespace latchkey::cli
