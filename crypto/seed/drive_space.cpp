#include "crypto/seed/drive_space.h"

#include <string>
#include <string_view>

#include "base/checked_arithmetic.h"
#include "crypto/crypto_state.h"

namespace latchkey {
namespace {

bool ReadByteCounts(const char* driveRoot, DriveSpaceInfo& info) {
  const auto space = Probe().GetDiskFreeSpaceExA(driveRoot);
  if (!space) return false;
  DriveSpaceInfo read = info;
  read.AvailableBytes = Currency::FromBytes(space->availableBytes);
  read.TotalBytes = Currency::FromBytes(space->totalBytes);
  read.FreeBytes = Currency::FromBytes(space->freeBytes);
  read.UsedBytes = read.TotalBytes - read.FreeBytes;
  info = read;
  return true;
}

// Multiplies sectors, bytes and clusters in 32 bits, the width of the counts.
bool ReadClusterCounts(const char* driveRoot, DriveSpaceInfo& info) {
  const auto clusters = Probe().GetDiskFreeSpaceA(driveRoot);
  if (!clusters) return false;
  info.SectorsPerCluster = static_cast<std::int32_t>(clusters->sectorsPerCluster);
  info.BytesPerSector = static_cast<std::int32_t>(clusters->bytesPerSector);
  info.NumberOfFreeClusters = static_cast<std::int32_t>(clusters->numberOfFreeClusters);
  info.TotalNumberOfClusters = static_cast<std::int32_t>(clusters->totalNumberOfClusters);
  const std::int32_t clusterBytes = CheckedMultiply(info.SectorsPerCluster, info.BytesPerSector);
  info.TotalBytes = Currency::FromWhole(CheckedMultiply(clusterBytes, info.TotalNumberOfClusters));
  info.FreeBytes = Currency::FromWhole(CheckedMultiply(clusterBytes, info.NumberOfFreeClusters));
  info.AvailableBytes = info.FreeBytes;
  info.UsedBytes = info.TotalBytes - info.FreeBytes;
  return true;
}

void KeepLastDrive(const DriveSpaceInfo& info) {
  CryptoState& state = ThisThreadCrypto();
  state.lastDriveTotal = info.TotalBytes.ToDouble();
  state.lastDriveFree = info.FreeBytes.ToDouble();
  state.lastDriveUsed = info.UsedBytes.ToDouble();
}

void ShowDriveFailure(std::string_view driveRoot) {
  Text message = u"Drive information for drive ";
  message.append(driveRoot.begin(), driveRoot.end());
  message += u" has caused an error.";
  Probe().ShowWarning(message);
}

}  // namespace

bool GetDriveSpace(const char* driveRoot, DriveSpaceInfo& info) {
  try {
    const bool read = DiskFreeSpaceExAvailable() ? ReadByteCounts(driveRoot, info)
                                                 : ReadClusterCounts(driveRoot, info);
    KeepLastDrive(info);
    return read;
  } catch (...) {
    ShowDriveFailure(driveRoot);
    return false;
  }
}

bool DiskFreeSpaceExAvailable() {
  try {
    return Probe().GetDiskFreeSpaceExA(kSystemDrive).has_value();
  } catch (...) {
    return false;
  }
}

}  // namespace latchkey
