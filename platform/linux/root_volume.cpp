#include "platform/linux/root_volume.h"

#include <sys/statfs.h>

#include <algorithm>
#include <bit>
#include <limits>

namespace latchkey::platform {
namespace {

std::optional<struct statvfs> RootStatus() {
  struct statvfs status {};
  if (::statvfs("/", &status) != 0) return std::nullopt;
  return status;
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

std::string FileSystemName(std::uint32_t type) { return std::to_string(type); }

std::optional<VolumeInformation> RootVolume() {
  struct statfs status {};
  if (::statfs("/", &status) != 0) return std::nullopt;
  const auto id = std::bit_cast<std::uint64_t>(status.f_fsid);
  return VolumeInformation{"", VolumeNumber(id),
                           FileSystemName(static_cast<std::uint32_t>(status.f_type))};
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
