// What a name denotes.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace latchkey::cli {

// Nothing: no file of that name exists. Link: a symbolic link. Other: a device, pipe or socket.
enum class FileKind { Nothing, File, Folder, Link, Other };

struct FileState {
  FileKind kind = FileKind::Nothing;
  std::uint64_t size = 0;
  std::array<std::uint64_t, 2> identity{};  // the same for all names of a file
  int reason = 0;                           // why there is nothing: errno, or GetLastError()
};

enum class Links { Follow, Keep };

// Nothing also if the system cannot say.
[[nodiscard]] FileState StateOf(const std::string& name, Links links);

// Whether the character separates folders in a name.
[[nodiscard]] bool IsSeparator(char character) noexcept;

// The name in the form in which all spellings that the file system does not distinguish are equal:
// on Windows in capital letters.
[[nodiscard]] std::string FoldedCase(const std::string& name);

// Removes the unfinished outputs that killed processes left in a folder. Leaves those of running
// processes and all other files. Does what the system permits, and raises no failure.
void RemoveLeftovers(const std::string& folder);

}  // namespace latchkey::cli
