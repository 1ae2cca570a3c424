// A file that appears whole or not at all.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// Who may read the file: whom the system lets by default, or its owner alone. One that replaces
// another keeps that one's rights and, where the system allows, owner; with Owner no one else gets
// any.
enum class Readers { Default, Owner };

// The bytes go into a file without a known name beside the place; Commit flushes it to the disk and
// gives it its name. What is not committed is removed: by the destructor, and when the process is
// interrupted (Ctrl-C, termination) in between. One such file is open at a time.
//
// A link stays, and the file that it leads to is meant; one that leads nowhere is refused.
//
// What the process has open ("-" is standard output, on Linux also /dev/stdout, /dev/fd/N) and what
// is no regular file (a device, a pipe) are written to as they are: neither can be made whole or
// taken back.
//
// Every member raises FileError when the system refuses. Used by one thread.
class OutputFile {
 public:
  // With `replace` an existing file gives way at Commit, and a device or pipe is written to.
  // Without, each is refused (the null device is not), and a file again at Commit.
  OutputFile(const std::string& name, bool replace, Readers readers);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  void Write(std::span<const std::uint8_t> bytes);

  // No Write may follow. On return the file, its bytes and its name are on the disk. After a
  // failure the old file stands, or the new one whole.
  void Commit();

 private:
  void OpenBeside();
  void OpenAsItIs();

  UniqueFile file_;
  std::string name_;
  bool replace_;
  Readers readers_;
  std::string place_;      // the name to give; empty for a stream
  std::string temporary_;  // the name meanwhile; empty when there is none to remove
};

}  // namespace latchkey::cli
