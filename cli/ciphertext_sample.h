// A ciphertext read for identifying its settings.
#pragma once

#include <cstdint>
#include <vector>

#include "cli/platform/input_file.h"
#include "crypto/engine/candidates.h"

namespace latchkey::cli {

// Owns the bytes of a sample.
struct SampleBytes {
  std::vector<std::uint8_t> head;
  std::vector<std::uint8_t> tail;
  std::uint64_t length = 0;

  [[nodiscard]] CiphertextSample Sample() const noexcept { return {head, tail, length}; }
};

// Reads the input to its end, in constant memory. Shows progress unless `quiet`.
[[nodiscard]] SampleBytes ReadSample(InputFile& input, bool quiet);

}  // namespace latchkey::cli
