#include "crypto/seed/window_count.h"

#include <array>
#include <cstdint>

#include "crypto/crypto_state.h"

namespace latchkey {
namespace {

using WindowHandle = platform::SystemProbe::WindowHandle;

constexpr std::size_t kNameLength = 260;

void Count(CryptoState& state, WindowHandle window) {
  state.windowCount += 1;
  state.windowHandleSum += static_cast<std::int32_t>(window);
}

void VisitChild(CryptoState& state, WindowHandle window) {
  platform::SystemProbe& probe = Probe();
  std::array<char, kNameLength> name{};
  if (probe.GetClassNameA(window, name) != 0) Count(state, window);
  // Part of the walk on both levels; the result of the call does not matter.
  probe.CloseHandle(window);
}

void VisitTopLevel(CryptoState& state, WindowHandle window) {
  platform::SystemProbe& probe = Probe();
  Count(state, window);
  std::array<char, kNameLength> title{};
  probe.GetWindowTextA(window, title);
  probe.EnumChildWindows(window, [&state](WindowHandle child) { VisitChild(state, child); });
  probe.CloseHandle(window);
}

}  // namespace

void CountWindows(double& windowCount, double& handleSum) {
  CryptoState& state = ThisThreadCrypto();
  state.windowCount = 0;
  state.windowHandleSum = 0;
  Probe().EnumWindows([&state](WindowHandle window) { VisitTopLevel(state, window); });
  windowCount = state.windowCount;
  handleSum = state.windowHandleSum;
}

}  // namespace latchkey
