// How much room a drive has.
#pragma once

#include <cstdint>

#include "crypto/seed/currency.h"
#include "latchkey/types.h"

namespace latchkey {

// The root path of the system drive.
inline constexpr const char* kSystemDrive = "C:\\";

struct DriveSpaceInfo {
  std::int32_t SectorsPerCluster = 0;
  std::int32_t BytesPerSector = 0;
  std::int32_t NumberOfFreeClusters = 0;
  std::int32_t TotalNumberOfClusters = 0;
  Currency FreeBytes;       // free for all users together
  Currency AvailableBytes;  // free for the calling user
  Currency UsedBytes;
  Currency TotalBytes;
};

// Fills `info` for the drive whose root path is given and keeps the thread's last-drive values.
// False, with `info` untouched, when the drive cannot be queried. A fault (a byte count beyond the
// range of Currency, or of 32 bits where only clusters are counted) shows a message box and gives
// false. Raises nothing but a failure of memory for that box.
bool GetDriveSpace(const char* driveRoot, DriveSpaceInfo& info);

// Whether drive C answers the query that counts bytes in 64 bits, whatever drive is asked about
// next. A fault gives false.
bool DiskFreeSpaceExAvailable();

}  // namespace latchkey
