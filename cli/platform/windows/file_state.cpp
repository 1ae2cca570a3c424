#include "cli/platform/file_state.h"

#include <windows.h>

#include "cli/name_parts.h"
#include "cli/platform/folder_reader.h"
#include "cli/platform/windows/handles.h"
#include "cli/temporary_name.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

FileKind KindOf(HANDLE file, DWORD attributes, Links links) noexcept {
  const bool isLink = links == Links::Keep && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (isLink || GetFileType(file) != FILE_TYPE_DISK) return FileKind::Other;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::Folder : FileKind::File;
}

std::uint64_t NumberOf(DWORD high, DWORD low) noexcept { return std::uint64_t{high} << 32U | low; }

}  // namespace

FileState StateOf(const std::string& name, Links links) {
  if (name.find('\0') != std::string::npos) return {.reason = ERROR_INVALID_NAME};
  const DWORD flags =
      FILE_FLAG_BACKUP_SEMANTICS | (links == Links::Keep ? FILE_FLAG_OPEN_REPARSE_POINT : DWORD{0});
  const UniqueFile file = Owned(CreateFileW(platform::Widened(name).c_str(), FILE_READ_ATTRIBUTES,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                            nullptr, OPEN_EXISTING, flags, nullptr));
  if (!file) return {.reason = static_cast<int>(GetLastError())};
  BY_HANDLE_FILE_INFORMATION information{};
  if (!GetFileInformationByHandle(HandleOf(file), &information)) {
    return {.kind = FileKind::Other};
  }
  return {.kind = KindOf(HandleOf(file), information.dwFileAttributes, links),
          .size = NumberOf(information.nFileSizeHigh, information.nFileSizeLow),
          .identity = {information.dwVolumeSerialNumber,
                       NumberOf(information.nFileIndexHigh, information.nFileIndexLow)}};
}

bool IsSeparator(char character) noexcept { return character == '/' || character == '\\'; }

std::string FoldedCase(const std::string& name) {
  std::wstring wide = platform::Widened(name);
  CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return platform::Narrowed(wide);
}

// The system removes unfinished outputs itself, unless it stops at once (a power failure). One that
// a process has open cannot be removed.
void RemoveLeftovers(const std::string& folder) {
  FolderReader entries(folder);
  for (std::string name; entries.Next(name);) {
    if (IsTemporaryName(name)) DeleteFileW(platform::Widened(Joined(folder, name)).c_str());
  }
}

}  // namespace latchkey::cli
