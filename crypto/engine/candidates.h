// Settings that ciphertexts may have been made with.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/secure_memory.h"
#include "crypto/engine/derived_key.h"
#include "crypto/engine/sample_evidence.h"

namespace latchkey {

// Settings that fit, with the evidence for them.
struct Candidate {
  std::vector<KeySettings> settings;  // all settings of this key; they differ in the provider
  std::size_t password = 0;           // index of the search's password
  std::size_t key = 0;                // index of the search's key
  Evidence evidence;
  double probability = 0;

  // With this limit, an answer for data that none of the keys was used for is wrong less than once
  // in 1,000. Measured by bench/identify_errors.
  static constexpr double kCertain = 0.9999;
  [[nodiscard]] bool IsCertain() const noexcept {
    return probability >= kCertain && evidence.unlike == 0;
  }
};

struct Candidates {
  std::vector<Candidate> fitting;  // the most probable first
  std::size_t tried = 0;           // different keys
  double noneProbability = 1;      // that none of the tried keys is right

  [[nodiscard]] bool IsCertain() const noexcept {
    return !fitting.empty() && fitting.front().IsCertain();
  }
};

// The lengths of RC2 and RC4 keys: those of the providers, 40 and 128 bits, or also 56, 64 and 80.
enum class KeyLengths { OfProviders, Usual };

// The keys of every password under every provider, hash and cipher, RC2 also with the 40 effective
// bits of Windows 2000 and before. Derived once, for any number of searches and threads.
class CandidateSearch {
 public:
  explicit CandidateSearch(std::span<const std::span<const std::uint8_t>> passwords,
                           KeyLengths lengths = KeyLengths::Usual);

  // The keys that fit all samples, which were made with the same one. Their probability follows
  // from SampleSet's evidence by Bayes' rule. The prior is one half for "none of them", and the
  // other half in equal shares for the tried keys: all, or those with the indexes `keys`.
  [[nodiscard]] Candidates Find(std::span<const CiphertextSample> samples) const;
  [[nodiscard]] Candidates Find(std::span<const CiphertextSample> samples,
                                std::span<const std::size_t> keys) const;

 private:
  // A key and the settings that give it.
  struct TriedKey {
    std::vector<KeySettings> settings;
    std::size_t password = 0;
    std::unique_ptr<DerivedKey> key;
    WipedBytes fingerprint;
  };

  void AddKeys(std::size_t number, std::span<const std::uint8_t> password, KeyLengths lengths);

  std::vector<TriedKey> keys_;
};

// A search with one password, and with keys of the providers' own lengths.
[[nodiscard]] Candidates FindCandidates(std::span<const CiphertextSample> samples,
                                        std::span<const std::uint8_t> password);

}  // namespace latchkey
