// Ciphertexts read for identifying their settings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/data_form.h"
#include "cli/platform/input_file.h"
#include "crypto/engine/sample_evidence.h"

namespace latchkey::cli {

// Owns the bytes of a sample.
struct SampleBytes {
  std::string file;
  std::optional<std::uint64_t> line;  // where a record is, from 1
  std::vector<std::uint8_t> head;
  std::vector<std::uint8_t> tail;
  std::uint64_t length = 0;

  [[nodiscard]] CiphertextSample Sample() const noexcept { return {head, tail, length}; }
};

// Reads a ciphertext in this form to its end, in constant memory, and keeps a head of at most that
// length. Shows progress unless `quiet`.
[[nodiscard]] SampleBytes ReadSample(InputFile& input, DataForm form, bool quiet,
                                     std::size_t longestHead = CiphertextSample::kHeadLength);

// Adds the records of the input until there are `most`: lines of hexadecimal digits in any case,
// with 0x or \x in front or not, blanks and double quotes around them or not. Skips empty lines.
// Raises CommandError for other lines, with their number.
void ReadRecords(InputFile& input, std::size_t most, std::vector<SampleBytes>& records);

}  // namespace latchkey::cli
