// Queries of the machine: ticks, the clock, the system volume, windows, and a message box. Each
// member has the name and meaning of a Windows call. On Linux the running processes count as
// windows.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "latchkey/types.h"

namespace latchkey::platform {

struct VolumeInformation {
  std::string volumeName;          // code-page bytes, up to the first NUL
  std::uint32_t serialNumber = 0;  // the volume's identification number
  std::string fileSystemName;      // code-page bytes, up to the first NUL
};

struct DiskSpace {
  std::uint64_t availableBytes = 0;  // free for the calling user
  std::uint64_t totalBytes = 0;
  std::uint64_t freeBytes = 0;  // free for all users together
};

struct DiskClusters {
  std::uint32_t sectorsPerCluster = 0;
  std::uint32_t bytesPerSector = 0;
  std::uint32_t numberOfFreeClusters = 0;
  std::uint32_t totalNumberOfClusters = 0;
};

class SystemProbe {
 public:
  using WindowHandle = std::uintptr_t;
  using WindowVisitor = std::function<void(WindowHandle)>;

  SystemProbe() = default;
  SystemProbe(const SystemProbe&) = delete;
  SystemProbe& operator=(const SystemProbe&) = delete;
  virtual ~SystemProbe() = default;

  // Milliseconds of a counter that wraps at 2^32.
  virtual std::uint32_t GetTickCount() = 0;

  // The same bits as a signed number.
  [[nodiscard]] std::int32_t SignedTickCount() { return static_cast<std::int32_t>(GetTickCount()); }

  // The local date and time in the Automation form: days since 30 December 1899, the time of day
  // as the fraction.
  virtual double Now() = 0;

  // Nothing if the volume cannot be queried. On Linux every root path means "/".
  virtual std::optional<VolumeInformation> GetVolumeInformationA(const char* rootPath) = 0;
  virtual std::optional<DiskSpace> GetDiskFreeSpaceExA(const char* rootPath) = 0;
  virtual std::optional<DiskClusters> GetDiskFreeSpaceA(const char* rootPath) = 0;

  // Calls the visitor for each top-level window, or for each descendant of `parent`, on the
  // calling thread. An exception from the visitor ends the walk and reaches the caller. On Linux
  // the top-level windows are the running processes, each under its number (none where /proc cannot
  // be read), and have no descendants and no names.
  virtual void EnumWindows(const WindowVisitor& visit) = 0;
  virtual void EnumChildWindows(WindowHandle parent, const WindowVisitor& visit) = 0;

  // Copy a window's title or class name, NUL-terminated, into `buffer`. Return its length in
  // characters, 0 for no text or a failure.
  virtual int GetWindowTextA(WindowHandle window, std::span<char> buffer) = 0;
  virtual int GetClassNameA(WindowHandle window, std::span<char> buffer) = 0;

  // Calls Windows' CloseHandle on the number of a window handle; does nothing elsewhere.
  virtual bool CloseHandle(WindowHandle window) = 0;

  // A modal box with the exclamation icon, an OK button and the default caption. On Linux a line
  // on standard error.
  virtual void ShowWarning(TextView message) = 0;
};

// The platform's probe. Lives as long as the process; any thread may use it.
SystemProbe& MachineProbe();

}  // namespace latchkey::platform
