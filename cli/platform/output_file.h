// A file that appears complete or not at all.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// Who may read the file: the system's default, or only its owner. A file that replaces another
// keeps that file's rights and, if the system allows it, owner; with Owner no one else gets rights.
enum class Readers { Default, Owner };

// The bytes are written to a temporary file in the same folder; Commit flushes it to the disk and
// gives it its name. Without Commit the file is removed: by the destructor, and when the process is
// interrupted (Ctrl-C, termination). If the process is killed, it stays on Linux, and
// RemoveLeftovers removes it: it has a name of NewTemporaryName and is locked while it is open.
//
// If the name is a link, its target is replaced. A link without a target is refused.
//
// Files that the process has open ("-" is standard output, on Linux also /dev/stdout, /dev/fd/N),
// devices and pipes are written to directly, which cannot be undone.
//
// Every member raises FileError if a system call fails. Each object is used by one thread.
class OutputFile {
 public:
  // With `replace`, Commit replaces an existing file, and devices and pipes are written to. Without
  // it, the constructor refuses them all, except the null device. Commit then also refuses a file
  // that appeared in the meantime.
  OutputFile(const std::string& name, bool replace, Readers readers);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  void Write(std::span<const std::uint8_t> bytes);

  // No Write may follow. On return the file, its bytes and its name are on the disk. After a
  // failure either the old file or the complete new one is there.
  void Commit();

  // Gives the file the times of another. No Write may follow.
  void SetTimes(const FileTimes& times);

  // The steps of Commit in order, for outputs that share a flush of the disk. They do nothing for a
  // stream or device.
  void Seal();       // sets the rights; no Write may follow
  void Flush();      // writes the bytes to the disk
  void GiveName();   // renames the file, which stays open
  void FlushName();  // writes the name to the disk

  [[nodiscard]] const UniqueFile& File() const noexcept { return file_; }

 private:
  void OpenTemporary();
  void RemoveTemporary() noexcept;
  void OpenAsItIs();

  UniqueFile file_;
  std::string name_;
  bool replace_;
  Readers readers_;
  std::string place_;      // the name to give; empty for a stream
  std::string temporary_;  // the temporary name; empty if no file must be removed
  int removal_ = -1;       // the result of RemoveWhenInterrupted, on Linux
};

}  // namespace latchkey::cli
