#include "cli/platform/disk_flush.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>

#include "cli/platform/linux/given_descriptor.h"
#include "cli/platform/linux/interruption.h"

namespace latchkey::cli {
namespace {

// For fewer files, flushing each is as fast, and does not wait for the data of other processes.
constexpr std::size_t kFewestFiles = 4;

// syncfs reports failures since Linux 5.8.
bool ReportsFailures() noexcept {
  utsname system{};
  int major = 0;
  int minor = 0;
  // NOLINTNEXTLINE(cert-err34-c): a number that does not fit is no known version
  if (::uname(&system) != 0 || std::sscanf(system.release, "%d.%d", &major, &minor) != 2) {
    return false;
  }
  return std::pair(major, minor) >= std::pair(5, 8);
}

}  // namespace

// A descriptor reports the failures since it was opened, so each group uses its own.
bool DiskFlush::Bytes(std::span<const std::unique_ptr<OutputFile>> outputs) {
  static const bool reportsFailures = ReportsFailures();
  if (!reportsFailures || outputs.size() < kFewestFiles) return false;
  std::vector<std::uint64_t> flushed;
  for (const auto& output : outputs) {
    struct stat state {};
    if (::fstat(DescriptorOf(output->File()), &state) != 0) return false;
    const auto system = static_cast<std::uint64_t>(state.st_dev);
    if (std::ranges::find(flushed, system) != flushed.end()) continue;
    if (::syncfs(DescriptorOf(output->File())) != 0) return false;
    flushed.push_back(system);
    const auto isSystem = [&](const auto& known) { return known.first == system; };
    if (std::ranges::any_of(systems_, isSystem)) continue;
    UniqueFile file(::fcntl(DescriptorOf(output->File()), F_DUPFD_CLOEXEC, 0));
    if (!file) return false;
    systems_.emplace_back(system, std::move(file));
  }
  return true;
}

bool DiskFlush::Names() {
  return std::ranges::all_of(
      systems_, [](const auto& system) { return ::syncfs(DescriptorOf(system.second)) == 0; });
}

// The rest is for inputs, libraries and the streams.
std::size_t MostOpenOutputs() noexcept {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 1;
  const rlim_t half = std::min<rlim_t>(limit.rlim_cur / 2, kMostUnfinished / 2);
  return std::max<std::size_t>(static_cast<std::size_t>(half), 1);
}

void FailBeyondSizeLimit() noexcept { static_cast<void>(std::signal(SIGXFSZ, SIG_IGN)); }

}  // namespace latchkey::cli
