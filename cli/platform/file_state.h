// The kind and identity of the file that a name denotes.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace latchkey::cli {

// Nothing: no file of that name exists. Other: a symbolic link, device, pipe or socket.
enum class FileKind { Nothing, File, Folder, Other };

struct FileState {
  FileKind kind = FileKind::Nothing;
  std::uint64_t size = 0;
  std::array<std::uint64_t, 2> identity{};  // the same for all names of a file
  int reason = 0;                           // why the kind is Nothing: errno, or GetLastError()
};

enum class Links { Follow, Keep };

// The state of the file with this name. The kind is Nothing if the system reports a failure. Keep:
// returns the state of a symbolic link itself.
[[nodiscard]] FileState StateOf(const std::string& name, Links links);

// Whether the character separates folders in a name.
[[nodiscard]] bool IsSeparator(char character) noexcept;

// The name in a form that is equal for all spellings that the file system does not distinguish. On
// Windows this is capital letters, on Linux the unchanged name.
[[nodiscard]] std::string FoldedCase(const std::string& name);

// Removes the unfinished outputs that killed processes left in a folder. Keeps the outputs of
// running processes and all other files. Ignores failures.
void RemoveLeftovers(const std::string& folder);

}  // namespace latchkey::cli
