#include "cli/platform/folder_reader.h"

#include <dirent.h>

#include <cerrno>
#include <new>
#include <string_view>

namespace latchkey::cli {
namespace {

struct FolderCloser {
  void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

}  // namespace

class FolderReader::Entries {
 public:
  explicit Entries(const char* folder) : stream(::opendir(folder)) {}
  std::unique_ptr<DIR, FolderCloser> stream;
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
  while (const dirent* const entry = ::readdir(entries_->stream.get())) {
    const std::string_view found = entry->d_name;
    if (found == "." || found == "..") continue;
    name = found;
    return true;
  }
  reason_ = errno;
  return false;
}

}  // namespace latchkey::cli
