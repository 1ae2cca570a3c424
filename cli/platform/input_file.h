// Bytes from a file, a pipe or standard input.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// Exact bytes, with no buffer of its own and no conversion of line ends. Every member raises
// FileError when the system refuses. Used by one thread at a time, but for StopReading.
class InputFile {
 public:
  // Opens a file by its UTF-8 name; "-" is standard input.
  explicit InputFile(const std::string& name);

  // Takes over an open descriptor of the process: what a shell makes of `3<file`.
  static InputFile FromDescriptor(int descriptor);

  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&& other) = delete;
  ~InputFile();

  // Fills `bytes`; fewer than asked only at the end of the file, or when stopped.
  [[nodiscard]] std::size_t Read(std::span<std::uint8_t> bytes);

  // Readies the object for StopReading, before another thread knows of it.
  void AllowStop();

  // For any thread: a Read that waits for another process returns with what it has, and so does
  // each later one.
  void StopReading() noexcept;

  // The number of bytes from the start to the end, where the system knows it: a regular file.
  [[nodiscard]] std::optional<std::uint64_t> Size() const;

  // Lets go of the file before the object ends, so that it may be replaced. No Read may follow.
  void Close() noexcept { file_.Reset(); }

  // The name to tell people.
  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

 private:
  class Interruption;

  InputFile(UniqueFile file, std::string name);

  UniqueFile file_;
  std::string name_;
  std::unique_ptr<Interruption> interruption_;  // none: Read cannot be stopped
};

}  // namespace latchkey::cli
