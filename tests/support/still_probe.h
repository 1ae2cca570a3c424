// A machine whose answers take no memory.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <span>

#include "platform/system_probe.h"

namespace latchkey::test {

// The seed text of this machine is "00" (digit 9, no space on the drive). No step of making that
// allocates: DigitsOnly answers a failure of its own with empty text and reading the drive with a
// warning, and the operation around them would go on.
class StillProbe final : public platform::SystemProbe {
 public:
  std::uint32_t GetTickCount() override { return 9; }
  double Now() override { return 40000.5; }
  std::optional<platform::VolumeInformation> GetVolumeInformationA(const char*) override {
    return platform::VolumeInformation{};
  }
  std::optional<platform::DiskSpace> GetDiskFreeSpaceExA(const char*) override {
    return platform::DiskSpace{};
  }
  std::optional<platform::DiskClusters> GetDiskFreeSpaceA(const char*) override { return {}; }
  void EnumWindows(const WindowVisitor&) override {}
  void EnumChildWindows(WindowHandle, const WindowVisitor&) override {}
  int GetWindowTextA(WindowHandle, std::span<char>) override { return 0; }
  int GetClassNameA(WindowHandle, std::span<char>) override { return 0; }
  bool CloseHandle(WindowHandle) override { return false; }
  void ShowWarning(TextView) override { ADD_FAILURE() << "a warning"; }
};

}  // namespace latchkey::test
