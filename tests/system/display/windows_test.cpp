// The walk over real windows.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "crypto/seed/window_count.h"
#include "platform/system_probe.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

using platform::MachineProbe;
using platform::SystemProbe;
using WindowHandle = SystemProbe::WindowHandle;

constexpr const char* kClassName = "LatchkeyTestWindow";

WindowHandle NumberOf(HWND window) { return reinterpret_cast<WindowHandle>(window); }
std::int32_t SignedNumberOf(HWND window) { return static_cast<std::int32_t>(NumberOf(window)); }

void RegisterTestClass() {
  WNDCLASSA description{};
  description.lpfnWndProc = DefWindowProcA;
  description.lpszClassName = kClassName;
  RegisterClassA(&description);
}

// A hidden window that is destroyed with the object, with its children.
class TestWindow {
 public:
  explicit TestWindow(HWND parent = nullptr)
      : window_(CreateWindowExA(0, kClassName, "Title",
                                parent != nullptr ? WS_CHILD : WS_OVERLAPPED, 0, 0, 10, 10, parent,
                                nullptr, nullptr, nullptr)) {
    if (window_ == nullptr) throw std::runtime_error("no window");
  }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;
  ~TestWindow() { DestroyWindow(window_); }

  [[nodiscard]] HWND Get() const { return window_; }

 private:
  HWND window_;
};

struct Figures {
  double count = 0;
  double sum = 0;
  friend bool operator==(const Figures&, const Figures&) = default;
};

// The windows that user32 itself enumerates, each with its handle as a signed number.
BOOL CALLBACK AddWindow(HWND window, LPARAM figures) {
  auto& [count, sum] = *reinterpret_cast<Figures*>(figures);
  count += 1;
  sum += SignedNumberOf(window);
  return TRUE;
}

BOOL CALLBACK AddWindowAndDescendants(HWND window, LPARAM figures) {
  AddWindow(window, figures);
  ::EnumChildWindows(window, AddWindow, figures);
  return TRUE;
}

Figures SystemsFigures() {
  Figures figures;
  ::EnumWindows(AddWindowAndDescendants, reinterpret_cast<LPARAM>(&figures));
  return figures;
}

Figures CountedFigures() {
  Figures figures;
  CountWindows(figures.count, figures.sum);
  return figures;
}

// The component's figures while the desktop did not change: other programs have windows too.
Figures CountedOnAStillDesktop(Figures& expected) {
  Figures counted;
  do {
    expected = SystemsFigures();
    counted = CountedFigures();
  } while (SystemsFigures() != expected);
  return counted;
}

// The machine's probe, with one window that is destroyed between its enumeration and its visit.
class DestroyingProbe final : public SystemProbe {
 public:
  explicit DestroyingProbe(HWND victim) : victim_(victim) {}

  std::uint32_t GetTickCount() override { return MachineProbe().GetTickCount(); }
  double Now() override { return MachineProbe().Now(); }
  std::optional<platform::VolumeInformation> GetVolumeInformationA(const char* root) override {
    return MachineProbe().GetVolumeInformationA(root);
  }
  std::optional<platform::DiskSpace> GetDiskFreeSpaceExA(const char* root) override {
    return MachineProbe().GetDiskFreeSpaceExA(root);
  }
  std::optional<platform::DiskClusters> GetDiskFreeSpaceA(const char* root) override {
    return MachineProbe().GetDiskFreeSpaceA(root);
  }
  void EnumWindows(const WindowVisitor& visit) override { MachineProbe().EnumWindows(visit); }
  void EnumChildWindows(WindowHandle parent, const WindowVisitor& visit) override {
    MachineProbe().EnumChildWindows(parent, [&](WindowHandle child) {
      if (child == NumberOf(victim_)) {
        visited = true;
        DestroyWindow(victim_);
      }
      visit(child);
    });
  }
  int GetWindowTextA(WindowHandle window, std::span<char> buffer) override {
    return MachineProbe().GetWindowTextA(window, buffer);
  }
  int GetClassNameA(WindowHandle window, std::span<char> buffer) override {
    return MachineProbe().GetClassNameA(window, buffer);
  }
  bool CloseHandle(WindowHandle window) override { return MachineProbe().CloseHandle(window); }
  void ShowWarning(TextView message) override { MachineProbe().ShowWarning(message); }

  bool visited = false;

 private:
  HWND victim_;
};

class WindowsTest : public testing::Test {
 protected:
  WindowsTest() { RegisterTestClass(); }

  ModuleScope scope;
};

TEST_F(WindowsTest, EveryWindowAndDescendantIsCountedWithItsHandle) {
  const TestWindow top;
  const TestWindow child(top.Get());
  const TestWindow grandchild(child.Get());
  std::vector<WindowHandle> descendants;
  MachineProbe().EnumChildWindows(NumberOf(top.Get()),
                                  [&](WindowHandle window) { descendants.push_back(window); });
  EXPECT_EQ(descendants,
            (std::vector<WindowHandle>{NumberOf(child.Get()), NumberOf(grandchild.Get())}));
  Figures expected;
  const Figures counted = CountedOnAStillDesktop(expected);
  EXPECT_GE(expected.count, 3);
  EXPECT_EQ(counted.count, expected.count);
  EXPECT_EQ(counted.sum, expected.sum);
}

TEST_F(WindowsTest, ADescendantWithoutAClassNameIsNotCounted) {
  const TestWindow top;
  Figures counted;
  Figures withoutVictim;
  do {
    const TestWindow victim(top.Get());
    DestroyingProbe probe(victim.Get());
    scope.Services().probe = &probe;
    counted = CountedFigures();
    ASSERT_TRUE(probe.visited);
    withoutVictim = SystemsFigures();
  } while (SystemsFigures() != withoutVictim);
  EXPECT_EQ(counted, withoutVictim);
}

TEST_F(WindowsTest, TitlesAndClassNamesAreThoseOfTheWindow) {
  const TestWindow top;
  std::array<char, 260> buffer{};
  EXPECT_EQ(MachineProbe().GetWindowTextA(NumberOf(top.Get()), buffer), 5);
  EXPECT_STREQ(buffer.data(), "Title");
  EXPECT_EQ(MachineProbe().GetClassNameA(NumberOf(top.Get()), buffer), 18);
  EXPECT_STREQ(buffer.data(), kClassName);
  std::array<char, 4> shortBuffer{};
  EXPECT_EQ(MachineProbe().GetClassNameA(NumberOf(top.Get()), shortBuffer), 3);
  EXPECT_STREQ(shortBuffer.data(), "Lat");
}

// The number of a window is not a valid argument of CloseHandle, unless the process has a handle of
// that number.
TEST_F(WindowsTest, AHandleOfAWindowsNumberIsClosedOnBothLevels) {
  const TestWindow top;
  const TestWindow child(top.Get());
  const WindowHandle last = std::max(NumberOf(top.Get()), NumberOf(child.Get()));
  std::vector<HANDLE> handles;
  HANDLE copy = nullptr;
  do {
    ASSERT_TRUE(DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), GetCurrentProcess(),
                                &copy, 0, FALSE, DUPLICATE_SAME_ACCESS));
    handles.push_back(copy);
  } while (reinterpret_cast<WindowHandle>(copy) < last);
  static_cast<void>(CountedFigures());
  DWORD flags = 0;
  for (const HWND window : {top.Get(), child.Get()}) {
    EXPECT_FALSE(GetHandleInformation(window, &flags)) << window;
  }
  std::size_t closed = 0;
  for (const HANDLE handle : handles) closed += CloseHandle(handle) != FALSE ? 0U : 1U;
  EXPECT_GE(closed, 2U);
  EXPECT_LT(closed, handles.size());
}

TEST_F(WindowsTest, AFaultOfTheVisitorEndsTheWalkAndReachesTheCaller) {
  const TestWindow top;
  const TestWindow child(top.Get());
  const TestWindow second(top.Get());
  int visits = 0;
  const auto visit = [&](WindowHandle) {
    ++visits;
    throw std::runtime_error("a visitor's");
  };
  EXPECT_THROW(MachineProbe().EnumChildWindows(NumberOf(top.Get()), visit), std::runtime_error);
  EXPECT_EQ(visits, 1);
  EXPECT_THROW(MachineProbe().EnumWindows(visit), std::runtime_error);
  EXPECT_EQ(visits, 2);
}

}  // namespace
}  // namespace latchkey::test
