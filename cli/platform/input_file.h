// Bytes from a file, a pipe or standard input.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// Reads exact bytes, without a buffer and without converting line ends. Every member raises
// FileError if a system call fails. Used by one thread at a time, except StopReading.
class InputFile {
 public:
  // Opens a file by its UTF-8 name; "-" is standard input.
  explicit InputFile(const std::string& name);

  // Takes over an open descriptor of the process, which a shell opens for `3<file`.
  static InputFile FromDescriptor(int descriptor);

  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&& other) = delete;
  ~InputFile();

  // Fills `bytes`; returns fewer bytes only at the end of the file, or when stopped.
  [[nodiscard]] std::size_t Read(std::span<std::uint8_t> bytes);

  // Prepares StopReading. Call it before another thread uses the object.
  void AllowStop();

  // Makes a Read that waits for another process return the bytes read so far, and each later Read
  // return at once. May be called from any thread.
  void StopReading() noexcept;

  // The number of bytes from the start to the end of a regular file; nothing for other inputs.
  [[nodiscard]] std::optional<std::uint64_t> Size() const;

  [[nodiscard]] FileTimes Times() const;

  // Closes the file early, so that it may be replaced. No Read may follow.
  void Close() noexcept { file_.Reset(); }

  // The name for messages.
  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

 private:
  class Interruption;

  InputFile(UniqueFile file, std::string name);

  UniqueFile file_;
  std::string name_;
  std::unique_ptr<Interruption> interruption_;  // null: Read cannot be stopped
};

}  // namespace latchkey::cli
