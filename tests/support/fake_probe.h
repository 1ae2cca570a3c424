// A machine whose every answer is the test's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "latchkey/fault.h"
#include "latchkey/types.h"
#include "platform/system_probe.h"

namespace latchkey::test {

// A window of the fake desktop. `children` are all its descendants, as EnumChildWindows gives them.
struct FakeWindow {
  platform::SystemProbe::WindowHandle handle = 0;
  std::string className = "Class";
  std::vector<FakeWindow> children = {};
};

// Set the answers, run the operation, read the journals. A fresh probe answers every question: one
// window, a volume, and disk space on drive C both in bytes and in clusters.
//
// A still one has no windows, an empty volume and no space on drive C, from which the seed text
// "00" is made under tick digit 9, its first. Its answers allocate nothing, so it enters no calls.
class FakeProbe final : public platform::SystemProbe {
 public:
  double now = 40000.5;
  std::optional<platform::VolumeInformation> volume;
  // By root path; nothing for any other drive.
  std::map<std::string, platform::DiskSpace, std::less<>> space;
  std::map<std::string, platform::DiskClusters, std::less<>> clusters;
  std::vector<FakeWindow> windows;

  // The member of that name raises the fault from now on.
  std::map<std::string, FaultNumber, std::less<>> faults;

  // The calls made so far, as the member's name followed by its window or root path.
  std::vector<std::string> calls;
  std::vector<Text> warnings;
  // The smallest buffer that a title or class name was to be copied to.
  std::size_t smallestBuffer = SIZE_MAX;

  FakeProbe();

  // The probe is a still one from now on, with other ticks if they are set afterwards.
  void HoldStill();

  // The next readings of the tick counter, one after another; the last one repeats.
  void SetTicks(std::vector<std::uint32_t> readings);

  // Empties the journals and lets their memory go.
  void ForgetCalls();

  // How many calls of the journal begin with `call`.
  [[nodiscard]] std::size_t CountCalls(const std::string& call) const;

  std::uint32_t GetTickCount() override;
  double Now() override;
  std::optional<platform::VolumeInformation> GetVolumeInformationA(const char* rootPath) override;
  std::optional<platform::DiskSpace> GetDiskFreeSpaceExA(const char* rootPath) override;
  std::optional<platform::DiskClusters> GetDiskFreeSpaceA(const char* rootPath) override;
  void EnumWindows(const WindowVisitor& visit) override;
  void EnumChildWindows(WindowHandle parent, const WindowVisitor& visit) override;
  int GetWindowTextA(WindowHandle window, std::span<char> buffer) override;
  int GetClassNameA(WindowHandle window, std::span<char> buffer) override;
  bool CloseHandle(WindowHandle window) override;
  void ShowWarning(TextView message) override;

 private:
  template <class... Argument>
  void Enter(const char* member, const Argument&... argument);
  [[nodiscard]] const FakeWindow* Find(WindowHandle window) const;

  bool still_ = false;
  std::vector<std::uint32_t> ticks_{0};
  std::size_t nextTick_ = 0;
};

}  // namespace latchkey::test
