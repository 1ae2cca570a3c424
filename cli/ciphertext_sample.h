// The parts of a ciphertext that identifying its settings requires.
#pragma once

#include <cstdint>
#include <vector>

#include "cli/platform/input_file.h"
#include "provider/block_size.h"

namespace latchkey::cli {

struct CiphertextSample {
  static constexpr std::size_t kHeadLength = std::size_t{1} << 16;
  // The last block and the one it is chained to.
  static constexpr std::size_t kTailLength = 2 * provider::kBlockSize;

  std::vector<std::uint8_t> head;  // the beginning; everything when IsWhole
  std::vector<std::uint8_t> tail;  // the last bytes, when there is more than the head
  std::uint64_t length = 0;        // of the ciphertext

  [[nodiscard]] bool IsWhole() const noexcept { return length == head.size(); }
};

// Reads the input to its end, in constant memory. Shows progress unless `quiet`.
[[nodiscard]] CiphertextSample ReadSample(InputFile& input, bool quiet);

}  // namespace latchkey::cli
