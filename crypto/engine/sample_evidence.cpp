#include "crypto/engine/sample_evidence.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <utility>

#include "base/secure_memory.h"
#include "crypto/engine/text_evidence.h"
#include "crypto/text_codec.h"

namespace latchkey {
namespace {

using provider::kBlockSize;

constexpr double kByteBits = 8;
// The most bytes used from the beginnings of all samples together, and the fewest from each.
constexpr std::size_t kAllHeads = std::size_t{1} << 20;
constexpr std::size_t kLeastHead = 1024;

// CountUnlike ignores samples shorter than kLeastJudged, whose bytes could be random by chance, and
// looks at the first kMostJudged bytes of the others.
constexpr std::size_t kLeastJudged = 32;
constexpr std::size_t kMostJudged = 4096;

constexpr double kLengthBits = 3;  // of the padding's eight possible lengths

std::uint64_t BlockAt(std::span<const std::uint8_t> bytes, std::size_t offset) noexcept {
  std::uint64_t block = 0;
  std::memcpy(&block, bytes.data() + offset, sizeof block);
  return block;
}

// Decrypts in place and cuts `bytes` to the result. False when the key does not fit.
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

// The number of padding bytes at the end of the plaintext, or nothing for bad padding. In CBC mode
// a block's decryption depends only on the block before it.
std::optional<unsigned> PaddingOf(const DerivedKey& key, std::span<const std::uint8_t> tail) {
  WipedBytes end(tail.begin(), tail.end());
  if (!Decrypt(key, end, true)) return std::nullopt;
  return static_cast<unsigned>(tail.size() - end.size());
}

// The bytes of the plaintext's new blocks.
WipedBytes NewBytes(const WipedBytes& plaintext, const std::vector<bool>& isNew) {
  WipedBytes bytes;
  bytes.reserve(plaintext.size());
  for (std::size_t i = 0; i < plaintext.size(); ++i) {
    if (isNew[i / kBlockSize]) bytes.push_back(plaintext[i]);
  }
  return bytes;
}

}  // namespace

CiphertextSample CiphertextSample::Of(std::span<const std::uint8_t> ciphertext) noexcept {
  return {ciphertext.first(std::min(ciphertext.size(), kHeadLength)),
          ciphertext.last(std::min(ciphertext.size(), kTailLength)), ciphertext.size()};
}

SampleSet::SampleSet(std::span<const CiphertextSample> samples) : samples_(samples) {
  const std::size_t share = kAllHeads / std::max<std::size_t>(samples.size(), 1);
  const std::size_t longest = std::max(kLeastHead, share / kBlockSize * kBlockSize);
  std::unordered_set<std::uint64_t> seen;
  for (const CiphertextSample& sample : samples) {
    Blocks blocks = BlocksOf(sample, longest);
    const std::span head =
        blocks.missing != 0 && blocks.isWhole ? blocks.restoredHead : blocks.head;
    for (std::size_t i = 0; i + kBlockSize <= head.size(); i += kBlockSize) {
      blocks.isNew.push_back(seen.insert(BlockAt(head, i)).second);
    }
    const bool isLastInHead = blocks.isWhole && !blocks.isNew.empty();
    blocks.isLastNew =
        isLastInHead
            ? blocks.isNew.back()
            : blocks.tail.size() >= kBlockSize &&
                  seen.insert(BlockAt(blocks.tail, blocks.tail.size() - kBlockSize)).second;
    blocks_.push_back(std::move(blocks));
  }
  if (samples.size() > 1) CountPositions();
}

SampleSet::Blocks SampleSet::BlocksOf(const CiphertextSample& sample, std::size_t longest) {
  Blocks blocks;
  blocks.head = sample.head.first(std::min(sample.head.size(), longest));
  blocks.isWhole = blocks.head.size() == sample.length;
  blocks.missing = BytesToWholeBlocks(sample.length);
  // The last block and, if there is one, the block before it.
  const std::size_t kept =
      std::min(sample.tail.size(), CiphertextSample::kTailLength - blocks.missing);
  const auto tail = sample.tail.last(kept);
  blocks.tail.assign(tail.begin(), tail.end());
  blocks.tail.insert(blocks.tail.end(), blocks.missing, kSpace);
  if (blocks.missing == 0 || !blocks.isWhole) return blocks;
  blocks.restoredHead.assign(sample.head.begin(), sample.head.end());
  blocks.restoredHead.insert(blocks.restoredHead.end(), blocks.missing, kSpace);
  return blocks;
}

// For the bytes of all samples at a position, the logarithm of their probability if a byte was
// xored there, relative to the mean over all bytes.
void SampleSet::CountPositions() {
  for (std::size_t position = 0; position < kPositions; ++position) {
    std::array<double, 256> counts{};
    bool any = false;
    for (const CiphertextSample& sample : samples_) {
      if (position >= sample.head.size()) continue;
      counts.at(sample.head[position]) += 1;
      any = true;
    }
    if (!any) return;
    std::array<double, 256> bits{};
    for (std::size_t code = 0; code < counts.size(); ++code) {
      if (counts.at(code) == 0) continue;
      for (std::size_t xored = 0; xored < bits.size(); ++xored) {
        bits.at(xored) +=
            counts.at(code) * EnglishEvidence(static_cast<std::uint8_t>(code ^ xored));
      }
    }
    const double mean = LogOfSum(bits) - kByteBits;
    for (double& each : bits) each -= mean;
    positions_.push_back(bits);
  }
}

std::optional<Evidence> SampleSet::Judge(const DerivedKey& key) const {
  if (key.Settings().HasBlockCipher()) return JudgeBlocks(key);
  const double bits = StreamEvidence(key);
  if (bits <= 0) return std::nullopt;
  return Evidence{bits, std::nullopt, 0, CountUnlike(key)};
}

std::optional<Evidence> SampleSet::JudgeBlocks(const DerivedKey& key) const {
  if (blocks_.empty()) return std::nullopt;
  Evidence evidence;
  for (const Blocks& blocks : blocks_) {
    if (!AddBlocks(key, blocks, evidence)) return std::nullopt;
  }
  return evidence;
}

bool SampleSet::AddBlocks(const DerivedKey& key, const Blocks& blocks, Evidence& evidence) const {
  if (blocks.tail.empty()) return false;
  const std::optional<unsigned> padding = PaddingOf(key, blocks.tail);
  if (!padding) return false;
  if (!evidence.padding) evidence.padding = padding;
  if (blocks.isLastNew) evidence.bits += kByteBits * *padding - kLengthBits;
  evidence.bits -= kByteBits * static_cast<double>(blocks.missing);
  evidence.restored += blocks.missing != 0 ? 1 : 0;
  const std::span<const std::uint8_t> head =
      blocks.restoredHead.empty() ? blocks.head : blocks.restoredHead;
  WipedBytes plaintext(head.begin(), head.end());
  if (!Decrypt(key, plaintext, blocks.isWhole)) return false;
  evidence.bits += TextEvidence(NewBytes(plaintext, blocks.isNew));
  return true;
}

// Combines two models: all samples are texts, or the longest one is meaningful data of any kind.
double SampleSet::StreamEvidence(const DerivedKey& key) const {
  if (samples_.empty()) return 0;
  const auto& longest = *std::ranges::max_element(
      samples_, {}, [](const CiphertextSample& sample) { return sample.head.size(); });
  WipedBytes plaintext(longest.head.begin(), longest.head.end());
  if (!Decrypt(key, plaintext, true)) return 0;
  const double ofLongest = TextEvidence(plaintext);
  if (samples_.size() == 1) return ofLongest;
  return LogOfSum(std::array{ofLongest - 1, PositionsEvidence(key) - 1});
}

std::size_t SampleSet::CountUnlike(const DerivedKey& key) const {
  if (samples_.size() == 1) return 0;
  return static_cast<std::size_t>(
      std::ranges::count_if(samples_, [&](const CiphertextSample& sample) {
        const auto head = sample.head.first(std::min(sample.head.size(), kMostJudged));
        WipedBytes plaintext(head.begin(), head.end());
        return head.size() >= kLeastJudged && Decrypt(key, plaintext, true) &&
               TextEvidence(plaintext) <= 0;
      }));
}

double SampleSet::PositionsEvidence(const DerivedKey& key) const {
  WipedBytes xored(positions_.size());
  auto length = static_cast<std::uint32_t>(xored.size());
  if (!key.Transform(CipherDirection::Encrypt, xored, length)) return 0;
  double bits = 0;
  for (std::size_t i = 0; i < positions_.size(); ++i) bits += positions_[i].at(xored[i]);
  return bits;
}

}  // namespace latchkey
