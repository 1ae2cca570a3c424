#include "cli/ciphertext_sample.h"

#include "cli/progress.h"

namespace latchkey::cli {

CiphertextSample ReadSample(InputFile& input, bool quiet) {
  Progress progress(input.Size(), quiet);
  CiphertextSample sample;
  sample.head.resize(CiphertextSample::kHeadLength);
  sample.head.resize(input.Read(sample.head));
  sample.length = sample.head.size();
  sample.tail = sample.head;
  progress.Advance(sample.length);
  std::vector<std::uint8_t> piece(std::size_t{1} << 18);
  while (const std::size_t count = input.Read(piece)) {
    sample.length += count;
    progress.Advance(count);
    sample.tail.insert(sample.tail.end(), piece.begin(),
                       piece.begin() + static_cast<std::ptrdiff_t>(count));
    if (sample.tail.size() > CiphertextSample::kTailLength) {
      sample.tail.erase(
          sample.tail.begin(),
          sample.tail.end() - static_cast<std::ptrdiff_t>(CiphertextSample::kTailLength));
    }
  }
  return sample;
}

}  // namespace latchkey::cli
