#include "crypto/window_count.h"

#include <array>
#include <cstdint>

#include "diagnostics/module_data.h"

namespace latchkey {
namespace {

using WindowHandle = platform::SystemProbe::WindowHandle;

constexpr std::size_t kNameLength = 260;

void Count(ModuleData& data, WindowHandle window) {
  data.windowCount += 1;
  data.windowHandleSum += static_cast<std::int32_t>(window);
}

void VisitChild(ModuleData& data, WindowHandle window) {
  platform::SystemProbe& probe = *data.services.probe;
  std::array<char, kNameLength> name{};
  if (probe.GetClassNameA(window, name) != 0) Count(data, window);
  // Part of the walk on both levels: what it answers for a window's handle does not matter.
  probe.CloseHandle(window);
}

void VisitTopLevel(ModuleData& data, WindowHandle window) {
  platform::SystemProbe& probe = *data.services.probe;
  Count(data, window);
  std::array<char, kNameLength> title{};
  probe.GetWindowTextA(window, title);
  probe.EnumChildWindows(window, [&data](WindowHandle child) { VisitChild(data, child); });
  probe.CloseHandle(window);
}

}  // namespace

void CountWindows(double& windowCount, double& handleSum) {
  ModuleData& data = ThreadModuleData();
  data.windowCount = 0;
  data.windowHandleSum = 0;
  data.services.probe->EnumWindows([&data](WindowHandle window) { VisitTopLevel(data, window); });
  windowCount = data.windowCount;
  handleSum = data.windowHandleSum;
}

}  // namespace latchkey
