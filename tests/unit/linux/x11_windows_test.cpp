// The walk over the windows of an X11 display, as the system probe gives it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/system_probe.h"
#include "tests/support/linux/virtual_display.h"

namespace latchkey::test {
namespace {

using Windows = std::vector<platform::SystemProbe::WindowHandle>;

class X11WindowsTest : public ::testing::Test {
 protected:
  [[nodiscard]] Windows TopLevelWindows() {
    Windows windows;
    probe.EnumWindows([&](auto window) { windows.push_back(window); });
    return windows;
  }

  [[nodiscard]] Windows ChildWindows(platform::SystemProbe::WindowHandle parent) {
    Windows windows;
    probe.EnumChildWindows(parent, [&](auto window) { windows.push_back(window); });
    return windows;
  }

  [[nodiscard]] std::string TitleOf(xcb_window_t window) {
    std::array<char, 260> buffer{};
    const int length = probe.GetWindowTextA(window, buffer);
    return {buffer.data(), static_cast<std::size_t>(length)};
  }

  [[nodiscard]] std::string ClassOf(xcb_window_t window) {
    std::array<char, 260> buffer{};
    const int length = probe.GetClassNameA(window, buffer);
    return {buffer.data(), static_cast<std::size_t>(length)};
  }

  VirtualDisplay display;
  WindowClient client;
  platform::SystemProbe& probe = platform::MachineProbe();
};

// The numbers of the open files; that of the folder being read is not among them.
std::set<int> OpenFiles() {
  std::set<int> files;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    files.insert(std::stoi(entry.path().filename().string()));
  }
  std::erase_if(files, [](int file) { return ::fcntl(file, F_GETFD) == -1; });
  return files;
}

TEST_F(X11WindowsTest, TopLevelWindowsAreTheChildrenOfTheRoot) {
  EXPECT_EQ(TopLevelWindows(), Windows{});
  const xcb_window_t first = client.Create();
  const xcb_window_t second = client.Create();
  static_cast<void>(client.Create(first));
  Windows found = TopLevelWindows();
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, (Windows{std::min(first, second), std::max(first, second)}));
}

TEST_F(X11WindowsTest, AllDescendantsAreVisitedParentsFirst) {
  const xcb_window_t top = client.Create();
  const xcb_window_t child = client.Create(top);
  const xcb_window_t grandchild = client.Create(child);
  const xcb_window_t greatGrandchild = client.Create(grandchild);
  const xcb_window_t sibling = client.Create(top);
  const Windows found = ChildWindows(top);
  EXPECT_EQ(found, (Windows{child, grandchild, greatGrandchild, sibling}));
  EXPECT_EQ(ChildWindows(sibling), Windows{});
}

TEST_F(X11WindowsTest, TitlesComeFromTheOlderPropertyOrTheNewerOne) {
  const xcb_window_t window = client.Create();
  EXPECT_EQ(TitleOf(window), "");
  client.SetProperty(window, "_NET_WM_NAME", "newer");
  EXPECT_EQ(TitleOf(window), "newer");
  client.SetProperty(window, "WM_NAME", "older");
  EXPECT_EQ(TitleOf(window), "older");
}

TEST_F(X11WindowsTest, TheClassIsTheSecondOfTheTwoNames) {
  const xcb_window_t window = client.Create();
  EXPECT_EQ(ClassOf(window), "");
  client.SetProperty(window, "WM_CLASS", std::string("instance\0Class\0", 15));
  EXPECT_EQ(ClassOf(window), "Class");
  client.SetProperty(window, "WM_CLASS", "one name only");
  EXPECT_EQ(ClassOf(window), "");
}

TEST_F(X11WindowsTest, ATextLongerThanTheBufferIsCutAndStillEnds) {
  const xcb_window_t window = client.Create();
  client.SetProperty(window, "WM_NAME", "abcdef");
  std::array<char, 4> buffer{'x', 'x', 'x', 'x'};
  EXPECT_EQ(probe.GetWindowTextA(window, buffer), 3);
  EXPECT_EQ(buffer, (std::array<char, 4>{'a', 'b', 'c', '\0'}));
  EXPECT_EQ(probe.GetWindowTextA(window, std::span<char>()), 0);
}

TEST_F(X11WindowsTest, AFaultOfTheVisitorEndsTheWalkAndReachesTheCaller) {
  const xcb_window_t top = client.Create();
  static_cast<void>(client.Create());
  static_cast<void>(client.Create(top));
  const auto before = OpenFiles();
  int visits = 0;
  const auto fail = [&](auto) {
    ++visits;
    throw std::runtime_error("enough");
  };
  EXPECT_THROW(probe.EnumWindows(fail), std::runtime_error);
  EXPECT_THROW(probe.EnumChildWindows(top, fail), std::runtime_error);
  EXPECT_EQ(visits, 2);
  EXPECT_EQ(OpenFiles(), before);
  EXPECT_EQ(TopLevelWindows().size(), 2U);
}

TEST_F(X11WindowsTest, OneConnectionServesAWholeWalkAndEndsWithIt) {
  const xcb_window_t top = client.Create();
  static_cast<void>(client.Create(top));
  const auto before = OpenFiles();
  int innermost = 0;
  probe.EnumWindows([&](auto window) {
    EXPECT_EQ(OpenFiles().size(), before.size() + 1);
    probe.EnumChildWindows(window, [&](auto child) {
      EXPECT_EQ(ClassOf(static_cast<xcb_window_t>(child)), "");
      EXPECT_EQ(OpenFiles().size(), before.size() + 1);
      ++innermost;
    });
  });
  EXPECT_EQ(innermost, 1);
  EXPECT_EQ(OpenFiles(), before);
}

TEST_F(X11WindowsTest, AWindowThatVanishesOnTheWayHasNothingLeft) {
  const xcb_window_t top = client.Create();
  const xcb_window_t child = client.Create(top);
  static_cast<void>(client.Create(child));
  const xcb_window_t sibling = client.Create(top);
  Windows found;
  probe.EnumChildWindows(top, [&](auto window) {
    found.push_back(window);
    if (window == child) client.Destroy(child);
  });
  EXPECT_EQ(found, (Windows{child, sibling}));
  EXPECT_EQ(TitleOf(child), "");
  EXPECT_EQ(ClassOf(child), "");
}

TEST_F(X11WindowsTest, ADisplayThatClosesOnTheWayEndsTheWalk) {
  const xcb_window_t top = client.Create();
  const xcb_window_t child = client.Create(top);
  static_cast<void>(client.Create(child));
  Windows found;
  probe.EnumWindows([&](auto window) {
    display.Stop();
    EXPECT_EQ(TitleOf(static_cast<xcb_window_t>(window)), "");
    EXPECT_EQ(ChildWindows(window), Windows{});
    found.push_back(window);
  });
  EXPECT_EQ(found, Windows{top});
  EXPECT_EQ(TopLevelWindows(), Windows{});
}

// A connection that closes while XCB writes to it raises SIGPIPE, which kills a program that has
// not asked for anything else. Here only the half that is written to is closed, so that reading
// cannot find out first.
TEST_F(X11WindowsTest, AConnectionThatBreaksUnderARequestRaisesNoSignal) {
  const auto handlerBefore = std::signal(SIGPIPE, SIG_DFL);
  const xcb_window_t top = client.Create();
  const std::set<int> before = OpenFiles();
  probe.EnumWindows([&](auto) {
    display.Pause();
    for (const int file : OpenFiles()) {
      if (!before.contains(file)) {
        EXPECT_EQ(::shutdown(file, SHUT_WR), 0);
      }
    }
    EXPECT_EQ(TitleOf(top), "");
  });
  sigset_t pending;
  ASSERT_EQ(sigpending(&pending), 0);
  EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
  std::signal(SIGPIPE, handlerBefore);
}

TEST(X11WithoutDisplayTest, ThereAreNoWindows) {
  const char* const display = std::getenv("DISPLAY");
  const std::string before = display != nullptr ? display : "";
  ::unsetenv("DISPLAY");
  platform::MachineProbe().EnumWindows([](auto) { ADD_FAILURE(); });
  platform::MachineProbe().EnumChildWindows(1, [](auto) { ADD_FAILURE(); });
  std::array<char, 8> buffer{};
  EXPECT_EQ(platform::MachineProbe().GetWindowTextA(1, buffer), 0);
  if (!before.empty()) ::setenv("DISPLAY", before.c_str(), 1);
}

}  // namespace
}  // namespace latchkey::test
