// One flush of the disk for several outputs.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "cli/platform/output_file.h"

namespace latchkey::cli {

// Writes several outputs to the disk with one call of the system. Used by one thread.
class DiskFlush {
 public:
  // Writes the bytes of all outputs to the disk. Returns false if the system has no such call, or
  // if the call reports a failure, which may be of other files; call Flush of each output then.
  // Every output must have been opened before any of them was written to.
  [[nodiscard]] bool Bytes(std::span<const std::unique_ptr<OutputFile>> outputs);

  // Writes the names of all outputs of successful calls of Bytes to the disk. Returns false if the
  // call fails.
  [[nodiscard]] bool Names();

 private:
  // For each file system, its number and one open file on it.
  std::vector<std::pair<std::uint64_t, UniqueFile>> systems_;
};

// The number of outputs that the process may have open at once, at least 1.
[[nodiscard]] std::size_t MostOpenOutputs() noexcept;

// Makes writing beyond the process's limit for the size of a file fail, instead of ending the
// process.
void FailBeyondSizeLimit() noexcept;

}  // namespace latchkey::cli
