// One flush of the disk for several outputs.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "cli/platform/output_file.h"

namespace latchkey::cli {

// Used by one thread.
class DiskFlush {
 public:
  // Writes the bytes of all outputs to the disk at once. False if the system has no call for that,
  // or if it reports a failure, perhaps of other files: then Flush each of them. Requires that the
  // outputs were opened before anything was written to any of them.
  [[nodiscard]] bool Bytes(std::span<const std::unique_ptr<OutputFile>> outputs);

  // Writes the names of all outputs of successful calls of Bytes to the disk. False if that fails.
  [[nodiscard]] bool Names();

 private:
  // A file of each file system, with the system's number of the latter.
  std::vector<std::pair<std::uint64_t, UniqueFile>> systems_;
};

// The number of outputs that the process may have open at once, at least 1.
[[nodiscard]] std::size_t MostOpenOutputs() noexcept;

// Makes writing beyond the process's limit for the size of a file fail, instead of ending the
// process.
void FailBeyondSizeLimit() noexcept;

}  // namespace latchkey::cli
