#include "cli/ciphertext_sample.h"

#include <algorithm>

#include "cli/progress.h"

namespace latchkey::cli {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;

// Keeps the last bytes of those read so far.
void AddToTail(std::vector<std::uint8_t>& tail, std::span<const std::uint8_t> bytes) {
  const auto last = bytes.last(std::min(bytes.size(), CiphertextSample::kTailLength));
  tail.insert(tail.end(), last.begin(), last.end());
  const std::size_t kept = std::min(tail.size(), CiphertextSample::kTailLength);
  tail.erase(tail.begin(), tail.end() - static_cast<std::ptrdiff_t>(kept));
}

}  // namespace

SampleBytes ReadSample(InputFile& input, bool quiet) {
  Progress progress(input.Size(), quiet);
  SampleBytes sample;
  sample.head.resize(CiphertextSample::kHeadLength);
  sample.head.resize(input.Read(sample.head));
  sample.length = sample.head.size();
  AddToTail(sample.tail, sample.head);
  progress.Advance(sample.length);
  std::vector<std::uint8_t> piece(kPiece);
  while (const std::size_t count = input.Read(piece)) {
    sample.length += count;
    progress.Advance(count);
    AddToTail(sample.tail, std::span(piece).first(count));
  }
  return sample;
}

}  // namespace latchkey::cli
