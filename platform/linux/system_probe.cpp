#include "platform/system_probe.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include "base/never_destroyed.h"
#include "platform/linux/processes.h"
#include "platform/linux/root_volume.h"
#include "platform/system_code_page.h"

namespace latchkey::platform {
namespace {

class LinuxProbe final : public SystemProbe {
 public:
  std::uint32_t GetTickCount() override {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
  }

  // Local time read as if it were UTC, counted from the Unix epoch, which is day 25,569.
  double Now() override {
    std::timespec now{};
    static_cast<void>(std::timespec_get(&now, TIME_UTC));
    std::tm local{};
    localtime_r(&now.tv_sec, &local);
    const std::time_t seconds = now.tv_sec + local.tm_gmtoff;
    const auto nanoseconds = static_cast<double>(now.tv_nsec);
    constexpr double kSecondsPerDay = 86'400;
    constexpr double kUnixEpoch = 25'569;
    return kUnixEpoch + (static_cast<double>(seconds) + nanoseconds / 1e9) / kSecondsPerDay;
  }

  std::optional<VolumeInformation> GetVolumeInformationA(const char* /*rootPath*/) override {
    return RootVolume();
  }
  std::optional<DiskSpace> GetDiskFreeSpaceExA(const char* /*rootPath*/) override {
    return RootSpace();
  }
  std::optional<DiskClusters> GetDiskFreeSpaceA(const char* /*rootPath*/) override {
    return RootClusters();
  }

  // Visits processes by number instead of asking a display server, whose answers may be wrong or
  // missing.
  void EnumWindows(const WindowVisitor& visit) override {
    processes_.Visit(GetTickCount(),
                     [&](pid_t process) { visit(static_cast<WindowHandle>(process)); });
  }
  void EnumChildWindows(WindowHandle /*parent*/, const WindowVisitor& /*visit*/) override {}
  int GetWindowTextA(WindowHandle /*window*/, std::span<char> /*buffer*/) override { return 0; }
  int GetClassNameA(WindowHandle /*window*/, std::span<char> /*buffer*/) override { return 0; }
  bool CloseHandle(WindowHandle /*window*/) override { return false; }

  void ShowWarning(TextView message) override {
    std::string line;
    for (const char16_t character : message) {
      const std::uint32_t code = SystemCodePage().CodeOf(character);
      line.push_back(static_cast<char>(code));
    }
    line.push_back('\n');
    static_cast<void>(std::fputs(line.c_str(), stderr));
  }

 private:
  RecentProcesses processes_;
};

}  // namespace

SystemProbe& MachineProbe() {
  static NeverDestroyed<LinuxProbe> probe;
  return probe.Get();
}

}  // namespace latchkey::platform
