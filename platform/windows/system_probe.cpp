#include "platform/system_probe.h"

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <exception>
#include <limits>

#include "platform/windows/wide_text.h"

namespace latchkey::platform {
namespace {

// The state of a walk over windows. Keeps an exception until the walk is over, since none may cross
// user32.
struct Walk {
  const SystemProbe::WindowVisitor& visit;
  std::exception_ptr fault;
};

BOOL CALLBACK VisitWindow(HWND window, LPARAM walkAddress) noexcept {
  Walk& walk = *reinterpret_cast<Walk*>(walkAddress);
  try {
    walk.visit(reinterpret_cast<SystemProbe::WindowHandle>(window));
    return TRUE;
  } catch (...) {
    walk.fault = std::current_exception();
    return FALSE;
  }
}

HWND WindowOf(SystemProbe::WindowHandle handle) { return reinterpret_cast<HWND>(handle); }

int SizeOf(std::span<char> buffer) {
  constexpr auto kLargest = static_cast<std::size_t>(std::numeric_limits<int>::max());
  return static_cast<int>(buffer.size() < kLargest ? buffer.size() : kLargest);
}

class WindowsProbe final : public SystemProbe {
 public:
  std::uint32_t GetTickCount() override { return ::GetTickCount(); }

  // Automation's own conversion drops the milliseconds.
  double Now() override {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const WORD milliseconds = now.wMilliseconds;
    now.wMilliseconds = 0;
    double days = 0;
    SystemTimeToVariantTime(&now, &days);
    constexpr double kMillisecondsPerDay = 86'400'000;
    return days + milliseconds / kMillisecondsPerDay;
  }

  std::optional<VolumeInformation> GetVolumeInformationA(const char* rootPath) override {
    std::array<char, MAX_PATH + 1> volumeName{};
    std::array<char, MAX_PATH + 1> fileSystemName{};
    DWORD serialNumber = 0;
    if (!::GetVolumeInformationA(rootPath, volumeName.data(), MAX_PATH, &serialNumber, nullptr,
                                 nullptr, fileSystemName.data(), MAX_PATH)) {
      return std::nullopt;
    }
    return VolumeInformation{volumeName.data(), serialNumber, fileSystemName.data()};
  }

  std::optional<DiskSpace> GetDiskFreeSpaceExA(const char* rootPath) override {
    ULARGE_INTEGER available{};
    ULARGE_INTEGER total{};
    ULARGE_INTEGER free{};
    if (!::GetDiskFreeSpaceExA(rootPath, &available, &total, &free)) return std::nullopt;
    return DiskSpace{available.QuadPart, total.QuadPart, free.QuadPart};
  }

  std::optional<DiskClusters> GetDiskFreeSpaceA(const char* rootPath) override {
    DWORD sectorsPerCluster = 0;
    DWORD bytesPerSector = 0;
    DWORD freeClusters = 0;
    DWORD totalClusters = 0;
    if (!::GetDiskFreeSpaceA(rootPath, &sectorsPerCluster, &bytesPerSector, &freeClusters,
                             &totalClusters)) {
      return std::nullopt;
    }
    return DiskClusters{sectorsPerCluster, bytesPerSector, freeClusters, totalClusters};
  }

  void EnumWindows(const WindowVisitor& visit) override {
    Walk walk{visit, nullptr};
    ::EnumWindows(VisitWindow, reinterpret_cast<LPARAM>(&walk));
    if (walk.fault) std::rethrow_exception(walk.fault);
  }

  void EnumChildWindows(WindowHandle parent, const WindowVisitor& visit) override {
    Walk walk{visit, nullptr};
    ::EnumChildWindows(WindowOf(parent), VisitWindow, reinterpret_cast<LPARAM>(&walk));
    if (walk.fault) std::rethrow_exception(walk.fault);
  }

  int GetWindowTextA(WindowHandle window, std::span<char> buffer) override {
    return ::GetWindowTextA(WindowOf(window), buffer.data(), SizeOf(buffer));
  }

  int GetClassNameA(WindowHandle window, std::span<char> buffer) override {
    return ::GetClassNameA(WindowOf(window), buffer.data(), SizeOf(buffer));
  }

  bool CloseHandle(WindowHandle window) override {
    return ::CloseHandle(reinterpret_cast<HANDLE>(window)) != FALSE;
  }

  void ShowWarning(TextView message) override {
    MessageBoxW(nullptr, Widened(message).c_str(), nullptr, MB_OK | MB_ICONEXCLAMATION);
  }
};

}  // namespace

SystemProbe& MachineProbe() {
  static WindowsProbe probe;
  return probe;
}

}  // namespace latchkey::platform
