#include "platform/linux/root_volume.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>

namespace latchkey::platform {
namespace {

std::optional<struct statvfs> RootStatus() {
  struct statvfs status {};
  if (::statvfs("/", &status) != 0) return std::nullopt;
  return status;
}

// If file systems are mounted over one another, the last in the table is the visible one.
std::string RootFileSystemName() {
  std::ifstream mounts("/proc/self/mounts");
  std::string name;
  for (std::string line; std::getline(mounts, line);) {
    std::istringstream fields(line);
    std::string device;
    std::string mountPoint;
    std::string type;
    if (fields >> device >> mountPoint >> type && mountPoint == "/") name = type;
  }
  return name;
}

std::uint32_t Saturated(std::uint64_t value) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(value, kLargest));
}

}  // namespace

std::uint32_t VolumeNumber(std::uint64_t fileSystemId) noexcept {
  const auto folded = static_cast<std::uint32_t>(fileSystemId ^ fileSystemId >> 32);
  return 1 + folded % kLargestVolumeNumber;
}

std::optional<VolumeInformation> RootVolume() {
  const auto status = RootStatus();
  if (!status) return std::nullopt;
  return VolumeInformation{"", VolumeNumber(status->f_fsid), RootFileSystemName()};
}

std::optional<DiskSpace> RootSpace() {
  const auto status = RootStatus();
  return status ? std::optional(SpaceOf(*status)) : std::nullopt;
}

DiskSpace SpaceOf(const struct statvfs& status) noexcept {
  const std::uint64_t unit = status.f_frsize;
  return {status.f_bavail * unit, status.f_blocks * unit, status.f_bfree * unit};
}

std::optional<DiskClusters> RootClusters() {
  const auto status = RootStatus();
  if (!status) return std::nullopt;
  constexpr std::uint32_t kSectorSize = 512;
  return DiskClusters{Saturated(status->f_frsize / kSectorSize), kSectorSize,
                      Saturated(status->f_bavail), Saturated(status->f_blocks)};
}

}  // namespace latchkey::platform
