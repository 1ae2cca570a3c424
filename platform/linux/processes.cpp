#include "platform/linux/processes.h"

#include <charconv>
#include <string_view>
#include <system_error>

#include "platform/linux/folder_stream.h"

namespace latchkey::platform {
namespace {

constexpr const char* kAllProcesses = "/proc";

// The number that the whole name spells, or 0, which no process has.
pid_t ProcessNamed(std::string_view name) noexcept {
  pid_t number = 0;
  const char* const end = name.data() + name.size();
  const auto [stop, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && stop == end ? number : 0;
}

}  // namespace

void VisitProcesses(const char* folder, const ProcessVisitor& visit) {
  const UniqueFolderStream entries(::opendir(folder));
  if (!entries) return;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): each call reads its own folder
  while (const dirent* const entry = ::readdir(entries.Get())) {
    const pid_t process = ProcessNamed(static_cast<const char*>(entry->d_name));
    if (process > 0) visit(process);
  }
}

void RecentProcesses::Visit(std::uint32_t tick, const ProcessVisitor& visit) {
  if (isTaken_.exchange(true, std::memory_order_acquire)) {
    return VisitProcesses(kAllProcesses, visit);
  }
  const struct Release {
    std::atomic<bool>& isTaken;
    ~Release() { isTaken.store(false, std::memory_order_release); }
  } release{isTaken_};
  if (!Holds(tick)) Read(tick);
  if (!Holds(tick)) return VisitProcesses(kAllProcesses, visit);
  for (std::size_t i = 0; i < count_; ++i) visit(processes_[i]);
}

bool RecentProcesses::Holds(std::uint32_t tick) const noexcept {
  return tick_ == tick && count_ > 0 && count_ <= processes_.size();
}

void RecentProcesses::Read(std::uint32_t tick) {
  tick_ = tick;
  count_ = 0;
  VisitProcesses(kAllProcesses, [this](pid_t process) {
    if (count_ < processes_.size()) processes_[count_] = process;
    ++count_;
  });
}

}  // namespace latchkey::platform
