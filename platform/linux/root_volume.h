// The file system mounted at "/".
#pragma once

#include <sys/statvfs.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/system_probe.h"

namespace latchkey::platform {

// The largest identification number. The seed of random data adds the number, shifted left by 3
// bits, to the milliseconds of the tick count in 32 bits. With this number the sum overflows for
// less than a second in the 49.7 days of the count.
inline constexpr std::uint32_t kLargestVolumeNumber = 124;

// The identification number of a file system whose own is `fileSystemId`: 1 to
// kLargestVolumeNumber. Never 0, since the seed may divide by it if the file system's name has no
// digits.
[[nodiscard]] std::uint32_t VolumeNumber(std::uint64_t fileSystemId) noexcept;

// The name of a file system whose type has this number in statfs(2): the number in decimal digits.
// The seed appends the identification number and reads both as one number, so the name must not
// look like a number with an exponent.
[[nodiscard]] std::string FileSystemName(std::uint32_t type);

// The volume name is empty. Nothing if the file system cannot be queried.
[[nodiscard]] std::optional<VolumeInformation> RootVolume();
[[nodiscard]] std::optional<DiskSpace> RootSpace();

// The byte counts of a file system's status.
[[nodiscard]] DiskSpace SpaceOf(const struct statvfs& status) noexcept;

// In sectors of 512 bytes; cluster counts beyond 32 bits become the largest 32-bit number.
[[nodiscard]] std::optional<DiskClusters> RootClusters();

}  // namespace latchkey::platform
