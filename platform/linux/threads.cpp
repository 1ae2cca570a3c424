#include "platform/linux/threads.h"

#include <dirent.h>

#include <charconv>
#include <memory>
#include <string_view>
#include <system_error>

namespace latchkey::platform {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

// The number that the whole name spells, or 0, which no thread has.
pid_t ThreadNamed(std::string_view name) noexcept {
  pid_t number = 0;
  const char* const end = name.data() + name.size();
  const auto [stop, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && stop == end ? number : 0;
}

}  // namespace

void VisitThreads(const char* folder, const std::function<void(pid_t)>& visit) {
  const std::unique_ptr<DIR, CloseFolder> entries(::opendir(folder));
  if (entries == nullptr) return;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): each call reads its own folder
  while (const dirent* const entry = ::readdir(entries.get())) {
    const pid_t thread = ThreadNamed(static_cast<const char*>(entry->d_name));
    if (thread > 0) visit(thread);
  }
}

}  // namespace latchkey::platform
