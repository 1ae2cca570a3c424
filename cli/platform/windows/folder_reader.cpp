#include "cli/platform/folder_reader.h"

#include <windows.h>

#include "base/unique_handle.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

struct SearchTrait {
  using Type = HANDLE;
  static Type None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Type search) noexcept { FindClose(search); }
};

}  // namespace

class FolderReader::Entries {
 public:
  explicit Entries(const std::string& folder)
      : search(FindFirstFileW(platform::Widened(folder + "/*").c_str(), &entry)) {}

  WIN32_FIND_DATAW entry{};
  bool isRead = true;
  UniqueHandle<SearchTrait> search;
};

FolderReader::FolderReader(const std::string& folder)
    : entries_(std::make_unique<Entries>(folder.empty() ? "." : folder)) {
  if (!entries_->search) reason_ = static_cast<int>(GetLastError());
}

FolderReader::~FolderReader() = default;

bool FolderReader::Next(std::string& name) {
  if (reason_ != 0) return false;
  do {
    if (!entries_->isRead && !FindNextFileW(entries_->search.Get(), &entries_->entry)) {
      const DWORD reason = GetLastError();
      reason_ = reason == ERROR_NO_MORE_FILES ? 0 : static_cast<int>(reason);
      entries_->isRead = false;
      return false;
    }
    entries_->isRead = false;
    name = platform::Narrowed(entries_->entry.cFileName);
  } while (name == "." || name == "..");
  return true;
}

}  // namespace latchkey::cli
