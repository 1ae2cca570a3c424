// A private file without a name, which the system removes with the process.
#pragma once

#include <cstdint>
#include <span>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// Bytes in the folder for temporary files (TMPDIR or /tmp, on Windows the user's). Members raise
// FileError. Any number of threads may call ReadAt at once.
class ScratchFile {
 public:
  ScratchFile();

  void Append(std::span<const std::uint8_t> bytes);

  // Fills `bytes` with the bytes from `offset` on; returns fewer bytes only at the end.
  [[nodiscard]] std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const;

  [[nodiscard]] std::uint64_t Size() const noexcept { return size_; }

 private:
  UniqueFile file_;
  std::uint64_t size_ = 0;
};

}  // namespace latchkey::cli
