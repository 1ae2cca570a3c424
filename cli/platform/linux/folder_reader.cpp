#include "cli/platform/folder_reader.h"

#include <cerrno>
#include <new>
#include <string_view>

#include "platform/linux/folder_stream.h"

namespace latchkey::cli {

class FolderReader::Entries {
 public:
  explicit Entries(const char* folder) : stream(::opendir(folder)) {}
  platform::UniqueFolderStream stream;
};

FolderReader::FolderReader(const std::string& folder)
    : entries_(std::make_unique<Entries>(folder.empty() ? "." : folder.c_str())) {
  if (entries_->stream) return;
  reason_ = errno;
  if (reason_ == ENOMEM) throw std::bad_alloc();
}

FolderReader::~FolderReader() = default;

bool FolderReader::Next(std::string& name) {
  if (reason_ != 0) return false;
  errno = 0;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): safe for different streams
  while (const dirent* const entry = ::readdir(entries_->stream.Get())) {
    const std::string_view found = entry->d_name;
    if (found == "." || found == "..") continue;
    name = found;
    return true;
  }
  reason_ = errno;
  return false;
}

}  // namespace latchkey::cli
