#include "crypto/engine/candidates.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "base/secure_memory.h"
#include "crypto/engine/text_evidence.h"

namespace latchkey {
namespace {

constexpr std::int32_t kHashes = 4;
constexpr std::int32_t kCiphers = 5;
constexpr std::int32_t kRc2 = 2;
constexpr std::uint32_t kOldRc2Bits = 40;

// All settings to try. Some include a cipher that the provider lacks.
std::vector<KeySettings> AllSettings() {
  std::vector<KeySettings> all;
  for (const ProviderChoice provider : {ProviderChoice::Base, ProviderChoice::Enhanced}) {
    for (std::int32_t cipher = 1; cipher <= kCiphers; ++cipher) {
      for (std::int32_t hash = 1; hash <= kHashes; ++hash) {
        all.push_back({hash, cipher, provider});
        if (provider == ProviderChoice::Enhanced && cipher == kRc2) {
          all.push_back({hash, cipher, provider, 0, kOldRc2Bits});
        }
      }
    }
  }
  return all;
}

// A key and the settings that give it.
struct TriedKey {
  std::vector<KeySettings> settings;
  std::unique_ptr<DerivedKey> key;
  WipedBytes fingerprint;
};

// The ciphertext of sixteen zero bytes, which identifies a key of one cipher. Empty if the provider
// refuses.
WipedBytes FingerprintOf(const DerivedKey& key) {
  WipedBytes zeros(2 * provider::kBlockSize + key.MostAdded());
  std::uint32_t length = 2 * provider::kBlockSize;
  return key.Transform(CipherDirection::Encrypt, zeros, length) ? zeros : WipedBytes();
}

bool IsSameKey(const TriedKey& tried, const TriedKey& other) {
  const KeySettings& settings = tried.settings.front();
  const KeySettings& otherSettings = other.settings.front();
  return settings.cipher == otherSettings.cipher && settings.hash == otherSettings.hash &&
         tried.fingerprint == other.fingerprint;
}

// The keys of all settings, without duplicates.
std::vector<TriedKey> AllKeys(std::span<const std::uint8_t> password) {
  std::vector<TriedKey> keys;
  for (const KeySettings& settings : AllSettings()) {
    TriedKey next{{settings}, std::make_unique<DerivedKey>(), {}};
    if (next.key->Derive(settings, password) != nullptr) continue;
    next.fingerprint = FingerprintOf(*next.key);
    if (next.fingerprint.empty()) continue;
    const auto same =
        std::ranges::find_if(keys, [&](const TriedKey& tried) { return IsSameKey(tried, next); });
    if (same != keys.end()) {
      same->settings.push_back(settings);
    } else {
      keys.push_back(std::move(next));
    }
  }
  return keys;
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the vector owns each key

// Decrypts in place and cuts `bytes` to the result. False if the settings do not fit.
bool Decrypt(const DerivedKey& key, WipedBytes& bytes, bool whole) {
  auto length = static_cast<std::uint32_t>(bytes.size());
  PasswordKey session = whole ? PasswordKey() : key.NewSession();
  const bool done = whole
                        ? key.Transform(CipherDirection::Decrypt, bytes, length)
                        : session.HasKey() && session.Transform(CipherDirection::Decrypt, bytes,
                                                                length, false) == CipherStep::Done;
  bytes.resize(done ? length : 0);
  return done;
}

// The number of padding bytes at the end of the plaintext, or nothing if the padding is bad. The
// tail is enough: in CBC mode, decrypting a block requires only the block before it.
std::optional<unsigned> PaddingOf(const DerivedKey& key, const CiphertextSample& sample) {
  if (sample.length == 0 || sample.length % provider::kBlockSize != 0) return std::nullopt;
  WipedBytes end(sample.tail.begin(), sample.tail.end());
  if (!Decrypt(key, end, true)) return std::nullopt;
  return static_cast<unsigned>(sample.tail.size() - end.size());
}

// Adds the sample's evidence to the candidate. False if the settings do not fit.
bool AddEvidence(const DerivedKey& key, const CiphertextSample& sample, Candidate& candidate) {
  const bool isBlockCipher = key.Settings().HasBlockCipher();
  if (isBlockCipher) {
    const std::optional<unsigned> padding = PaddingOf(key, sample);
    if (!padding) return false;
    if (!candidate.padding) candidate.padding = padding;
    candidate.evidenceBits += 8.0 * *padding - 3;
  }
  WipedBytes plaintext(sample.head.begin(), sample.head.end());
  if (!Decrypt(key, plaintext, !isBlockCipher || sample.IsWhole())) return false;
  candidate.evidenceBits += TextEvidence(plaintext);
  return true;
}

// A candidate without its probability; nothing if the settings do not fit.
std::optional<Candidate> Try(TriedKey& tried, std::span<const CiphertextSample> samples) {
  Candidate candidate;
  for (const CiphertextSample& sample : samples) {
    if (!AddEvidence(*tried.key, sample, candidate)) return std::nullopt;
  }
  if (!candidate.padding && candidate.evidenceBits <= 0) return std::nullopt;
  candidate.settings = std::move(tried.settings);
  return candidate;
}

// Applies Bayes' rule, in logarithms until the end, since evidence may be thousands of bits.
void SetProbabilities(Candidates& candidates) {
  const double prior =
      std::log2(0.5 / static_cast<double>(std::max<std::size_t>(candidates.tried, 1)));
  constexpr double kNone = -1;  // one half
  double largest = kNone;
  for (const Candidate& candidate : candidates.fitting) {
    largest = std::max(largest, prior + candidate.evidenceBits);
  }
  double sum = std::exp2(kNone - largest);
  for (Candidate& candidate : candidates.fitting) {
    candidate.probability = std::exp2(prior + candidate.evidenceBits - largest);
    sum += candidate.probability;
  }
  for (Candidate& candidate : candidates.fitting) candidate.probability /= sum;
  candidates.noneProbability = std::exp2(kNone - largest) / sum;
}

}  // namespace

CiphertextSample CiphertextSample::Of(std::span<const std::uint8_t> ciphertext) noexcept {
  return {ciphertext.first(std::min(ciphertext.size(), kHeadLength)),
          ciphertext.last(std::min(ciphertext.size(), kTailLength)), ciphertext.size()};
}

Candidates FindCandidates(std::span<const CiphertextSample> samples,
                          std::span<const std::uint8_t> password) {
  Candidates candidates;
  for (TriedKey& tried : AllKeys(password)) {
    ++candidates.tried;
    std::optional<Candidate> candidate = Try(tried, samples);
    if (candidate) candidates.fitting.push_back(std::move(*candidate));
  }
  SetProbabilities(candidates);
  std::stable_sort(candidates.fitting.begin(), candidates.fitting.end(),
                   [](const Candidate& left, const Candidate& right) {
                     return left.evidenceBits > right.evidenceBits;
                   });
  return candidates;
}

}  // namespace latchkey
