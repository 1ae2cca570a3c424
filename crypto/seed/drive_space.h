// The size and the free space of a drive.
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

// Fills `info` for the drive with this root path, and stores the thread's values of the last drive.
// Returns false and leaves `info` unchanged if the drive cannot be queried. A fault (a byte count
// outside the range of Currency or, where only clusters are counted, outside 32 bits) shows a
// message box and returns false. Raises only bad_alloc, if the box runs out of memory.
bool GetDriveSpace(const char* driveRoot, DriveSpaceInfo& info);

// Whether the query that counts bytes in 64 bits succeeds on drive C; it is always tried there, for
// any drive. A fault gives false.
bool DiskFreeSpaceExAvailable();

}  // namespace latchkey
