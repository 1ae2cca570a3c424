#include "cli/candidates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/secure_memory.h"
#include "cli/text_evidence.h"
#include "crypto/algorithms.h"
#include "crypto/open_provider.h"

namespace latchkey::cli {
namespace {

constexpr std::int16_t kHashes = 4;
constexpr std::int16_t kCiphers = 5;
constexpr std::int16_t kRc4 = 1;
constexpr std::int16_t kRc2 = 2;
constexpr std::uint32_t kOldRc2Bits = 40;

std::vector<CipherSettings> AllSettings() {
  std::vector<CipherSettings> all;
  for (const bool enhanced : {false, true}) {
    for (std::int16_t cipher = 1; cipher <= kCiphers; ++cipher) {
      if (FindCipherAlgorithm(cipher, enhanced) == provider::kAlgorithmNone) continue;
      for (std::int16_t hash = 1; hash <= kHashes; ++hash) {
        all.push_back({enhanced, hash, cipher, 0});
        if (enhanced && cipher == kRc2) all.push_back({enhanced, hash, cipher, kOldRc2Bits});
      }
    }
  }
  return all;
}

// Runs the ciphers of one sample and password.
class Trial {
 public:
  Trial(const CiphertextSample& sample, std::span<const std::uint8_t> password)
      : sample_(sample),
        password_(password),
        base_(OpenProvider(false)),
        enhanced_(OpenProvider(true)) {}

  // The encryption of sixteen zero bytes, which identifies a key of one cipher. Empty if the
  // provider fails to make the key.
  [[nodiscard]] WipedBytes Fingerprint(const CipherSettings& settings) const {
    std::optional<PasswordKey> key = MakeKey(settings);
    if (!key) return {};
    WipedBytes zeros(2 * provider::kBlockSize);
    auto length = static_cast<std::uint32_t>(zeros.size());
    const CipherStep step = key->Transform(CipherDirection::Encrypt, zeros, length, false);
    return step == CipherStep::Done ? zeros : WipedBytes();
  }

  // Returns nothing if the settings do not fit. The caller sets `settings` and `probability`.
  [[nodiscard]] std::optional<Candidate> Try(const CipherSettings& settings) const {
    return settings.cipher == kRc4 ? TryStream(settings) : TryBlocks(settings);
  }

 private:
  [[nodiscard]] std::optional<PasswordKey> MakeKey(const CipherSettings& settings) const {
    const UniqueContext& context = settings.enhanced ? enhanced_ : base_;
    std::optional<PasswordKey> key(std::in_place);
    const bool made =
        context && key->Derive(context, RequestOf(settings, password_)) == CipherStep::Done;
    return made ? std::move(key) : std::nullopt;
  }

  // Decrypts in place and cuts `bytes` to the result. False when the settings do not fit.
  bool Decrypt(const CipherSettings& settings, WipedBytes& bytes, bool final) const {
    std::optional<PasswordKey> key = MakeKey(settings);
    auto length = static_cast<std::uint32_t>(bytes.size());
    if (!key ||
        key->Transform(CipherDirection::Decrypt, bytes, length, final) != CipherStep::Done) {
      return false;
    }
    bytes.resize(length);
    return true;
  }

  [[nodiscard]] std::optional<Candidate> TryStream(const CipherSettings& settings) const {
    WipedBytes plaintext(sample_.head.begin(), sample_.head.end());
    if (!Decrypt(settings, plaintext, true)) return std::nullopt;
    Candidate candidate;
    candidate.evidenceBits = TextEvidence(plaintext);
    return candidate.evidenceBits > 0 ? std::optional(candidate) : std::nullopt;
  }

  // The number of padding bytes at the end of the plaintext, or nothing for bad padding. In CBC
  // mode a block's decryption depends only on the block before it.
  [[nodiscard]] std::optional<unsigned> PaddingOf(const CipherSettings& settings) const {
    if (sample_.length == 0 || sample_.length % provider::kBlockSize != 0) return std::nullopt;
    const std::size_t before = std::min(sample_.tail.size(), CiphertextSample::kTailLength);
    WipedBytes end(sample_.tail.end() - static_cast<std::ptrdiff_t>(before), sample_.tail.end());
    if (!Decrypt(settings, end, true)) return std::nullopt;
    return static_cast<unsigned>(before - end.size());
  }

  [[nodiscard]] std::optional<Candidate> TryBlocks(const CipherSettings& settings) const {
    Candidate candidate;
    candidate.padding = PaddingOf(settings);
    if (!candidate.padding) return std::nullopt;
    WipedBytes plaintext(sample_.head.begin(), sample_.head.end());
    if (!Decrypt(settings, plaintext, sample_.IsWhole())) return std::nullopt;
    candidate.evidenceBits = TextEvidence(plaintext) + 8.0 * *candidate.padding - 3;
    return candidate;
  }

  const CiphertextSample& sample_;
  std::span<const std::uint8_t> password_;
  UniqueContext base_;
  UniqueContext enhanced_;
};

// All settings, grouped by the key that they give.
std::vector<std::vector<CipherSettings>> GroupedByKey(const Trial& trial) {
  std::vector<std::vector<CipherSettings>> groups;
  std::vector<WipedBytes> fingerprints;
  for (const CipherSettings& settings : AllSettings()) {
    const WipedBytes fingerprint = trial.Fingerprint(settings);
    if (fingerprint.empty()) continue;
    std::size_t i = 0;
    while (i < groups.size() &&
           (groups[i].front().cipher != settings.cipher ||
            groups[i].front().hash != settings.hash || fingerprints[i] != fingerprint)) {
      ++i;
    }
    if (i == groups.size()) {
      groups.emplace_back();
      fingerprints.push_back(fingerprint);
    }
    groups[i].push_back(settings);
  }
  return groups;
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

Candidates FindCandidates(const CiphertextSample& sample, std::span<const std::uint8_t> password) {
  const Trial trial(sample, password);
  Candidates candidates;
  for (std::vector<CipherSettings>& group : GroupedByKey(trial)) {
    ++candidates.tried;
    std::optional<Candidate> candidate = trial.Try(group.front());
    if (!candidate) continue;
    candidate->settings = std::move(group);
    candidates.fitting.push_back(std::move(*candidate));
  }
  SetProbabilities(candidates);
  std::stable_sort(candidates.fitting.begin(), candidates.fitting.end(),
                   [](const Candidate& left, const Candidate& right) {
                     return left.evidenceBits > right.evidenceBits;
                   });
  return candidates;
}

}  // namespace latchkey::cli
