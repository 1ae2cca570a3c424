// A machine whose answers a test sets.
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

// A window of the fake desktop. `children` are all its descendants, in the order of
// EnumChildWindows.
struct FakeWindow {
  platform::SystemProbe::WindowHandle handle = 0;
  std::string className = "Class";
  std::vector<FakeWindow> children = {};
};

// Set the answers, run the operation, read the journals. A new probe answers every query: one
// window, a volume, and disk space on drive C both in bytes and in clusters.
//
// After HoldStill it has no windows, an empty volume and no space on drive C: the seed text is "00"
// for tick digit 9, the first one. Its answers then allocate nothing, so it keeps no journal.
class FakeProbe final : public platform::SystemProbe {
 public:
  double now = 40000.5;
  std::optional<platform::VolumeInformation> volume;
  // By root path; other drives cannot be queried.
  std::map<std::string, platform::DiskSpace, std::less<>> space;
  std::map<std::string, platform::DiskClusters, std::less<>> clusters;
  std::vector<FakeWindow> windows;

  // Members that raise a fault, by name.
  std::map<std::string, FaultNumber, std::less<>> faults;

  // The calls so far: the member's name followed by its window or root path.
  std::vector<std::string> calls;
  std::vector<Text> warnings;
  // The size of the smallest buffer passed for a title or class name.
  std::size_t smallestBuffer = SIZE_MAX;

  FakeProbe();

  // See the class comment. Ticks may be set afterwards.
  void HoldStill();

  // The next readings of the tick counter, in order; the last one repeats.
  void SetTicks(std::vector<std::uint32_t> readings);

  // Empties the journals and frees their memory.
  void ForgetCalls();

  // The number of calls in the journal that begin with `call`.
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
