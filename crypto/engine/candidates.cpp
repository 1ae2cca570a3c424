#include "crypto/engine/candidates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

#include "base/secure_memory.h"
#include "crypto/algorithms.h"

namespace latchkey {

namespace {

constexpr std::uint32_t kOldRc2Bits = 40;

// The usual lengths that are not the provider's own; the base provider has none above 56.
constexpr std::array<std::uint32_t, 4> kUsualBits{56, 40, 64, 80};

void AddLengths(std::vector<KeySettings>& all, const KeySettings& settings) {
  if (settings.cipher != kCipherRc4 && settings.cipher != kCipherRc2) return;
  const std::size_t count = settings.UsesEnhancedProvider() ? kUsualBits.size() : 1;
  for (const std::uint32_t bits : std::span(kUsualBits).first(count)) {
    all.push_back(settings);
    all.back().keyBits = bits;
  }
}

// All settings that keys are tried with. Providers lack some of the ciphers and lengths.
std::vector<KeySettings> AllSettings(KeyLengths lengths) {
  std::vector<KeySettings> all;
  for (const ProviderChoice provider : {ProviderChoice::Base, ProviderChoice::Enhanced}) {
    for (std::int32_t cipher = 1; cipher <= kCipherCount; ++cipher) {
      for (std::int32_t hash = 1; hash <= kHashCount; ++hash) {
        all.push_back({hash, cipher, provider});
        if (lengths == KeyLengths::Usual) AddLengths(all, {hash, cipher, provider});
        if (provider == ProviderChoice::Enhanced && cipher == kCipherRc2) {
          all.push_back({hash, cipher, provider, 0, kOldRc2Bits});
        }
      }
    }
  }
  return all;
}

// The encryption of sixteen zero bytes, which identifies a key of one cipher. Empty if the provider
// refuses.
WipedBytes FingerprintOf(const DerivedKey& key) {
  WipedBytes zeros(2 * provider::kBlockSize + key.MostAdded());
  std::uint32_t length = 2 * provider::kBlockSize;
  return key.Transform(CipherDirection::Encrypt, zeros, length) ? zeros : WipedBytes();
}

// Applies Bayes' rule, in logarithms until the end, since evidence may be thousands of bits.
void SetProbabilities(Candidates& candidates) {
  const double prior =
      std::log2(0.5 / static_cast<double>(std::max<std::size_t>(candidates.tried, 1)));
  constexpr double kNone = -1;  // one half
  double largest = kNone;
  for (const Candidate& candidate : candidates.fitting) {
    largest = std::max(largest, prior + candidate.evidence.bits);
  }
  double sum = std::exp2(kNone - largest);
  for (Candidate& candidate : candidates.fitting) {
    candidate.probability = std::exp2(prior + candidate.evidence.bits - largest);
    sum += candidate.probability;
  }
  for (Candidate& candidate : candidates.fitting) candidate.probability /= sum;
  candidates.noneProbability = std::exp2(kNone - largest) / sum;
}

}  // namespace

// Adds the keys of one password, each once.
void CandidateSearch::AddKeys(std::size_t number, std::span<const std::uint8_t> password,
                              KeyLengths lengths) {
  const auto first = static_cast<std::ptrdiff_t>(keys_.size());
  for (const KeySettings& settings : AllSettings(lengths)) {
    TriedKey next{{settings}, number, std::make_unique<DerivedKey>(), {}};
    if (next.key->Derive(settings, password) != nullptr) continue;
    next.fingerprint = FingerprintOf(*next.key);
    if (next.fingerprint.empty()) continue;
    const auto same = std::find_if(keys_.begin() + first, keys_.end(), [&](const TriedKey& tried) {
      const KeySettings& other = tried.settings.front();
      return other.cipher == settings.cipher && other.hash == settings.hash &&
             tried.fingerprint == next.fingerprint;
    });
    if (same == keys_.end()) {
      keys_.push_back(std::move(next));
    } else if (same->settings.back().provider != settings.provider) {
      same->settings.push_back(settings);
    }
  }
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the vector owns each key

CandidateSearch::CandidateSearch(std::span<const std::span<const std::uint8_t>> passwords,
                                 KeyLengths lengths) {
  for (std::size_t i = 0; i < passwords.size(); ++i) AddKeys(i, passwords[i], lengths);
}

Candidates CandidateSearch::Find(std::span<const CiphertextSample> samples) const {
  std::vector<std::size_t> all(keys_.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  return Find(samples, all);
}

Candidates CandidateSearch::Find(std::span<const CiphertextSample> samples,
                                 std::span<const std::size_t> keys) const {
  const SampleSet set(samples);
  Candidates candidates;
  candidates.tried = keys.size();
  for (const std::size_t index : keys) {
    const TriedKey& tried = keys_.at(index);
    const std::optional<Evidence> evidence = set.Judge(*tried.key);
    if (!evidence) continue;
    candidates.fitting.push_back({tried.settings, tried.password, index, *evidence});
  }
  SetProbabilities(candidates);
  std::ranges::stable_sort(candidates.fitting, std::ranges::greater{},
                           [](const Candidate& candidate) { return candidate.evidence.bits; });
  return candidates;
}

Candidates FindCandidates(std::span<const CiphertextSample> samples,
                          std::span<const std::uint8_t> password) {
  return CandidateSearch(std::array{password}, KeyLengths::OfProviders).Find(samples);
}

}  // namespace latchkey
