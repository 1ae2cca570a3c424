// What the system knows about the file system mounted at "/".
#pragma once

#include <sys/statvfs.h>

#include <optional>
#include <string>

#include "platform/system_probe.h"

namespace latchkey::platform {

// The identification number is folded from the file system's; the type's name ("ext4") comes from
// the mount table; there is no volume name. Nothing when the file system cannot be asked.
[[nodiscard]] std::optional<VolumeInformation> RootVolume();
[[nodiscard]] std::optional<DiskSpace> RootSpace();

// The byte counts of a file system's status.
[[nodiscard]] DiskSpace SpaceOf(const struct statvfs& status) noexcept;

// In sectors of 512 bytes; numbers of clusters beyond 32 bits give the largest 32-bit number.
[[nodiscard]] std::optional<DiskClusters> RootClusters();

}  // namespace latchkey::platform
