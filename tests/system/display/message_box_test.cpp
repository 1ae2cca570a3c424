// The message box after a drive's failure.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "platform/system_probe.h"

namespace latchkey::test {
namespace {

std::wstring TextOf(HWND window) {
  std::array<wchar_t, 512> buffer{};
  GetWindowTextW(window, buffer.data(), static_cast<int>(buffer.size()));
  return buffer.data();
}

std::wstring ClassOf(HWND window) {
  std::array<wchar_t, 64> buffer{};
  GetClassNameW(window, buffer.data(), static_cast<int>(buffer.size()));
  return buffer.data();
}

struct SeenBox {
  int boxes = 0;
  std::wstring caption;
  std::wstring text;
  HANDLE icon = nullptr;
  std::vector<std::wstring> buttons;
};

SeenBox seen;

BOOL CALLBACK SeeControl(HWND control, LPARAM) {
  const std::wstring name = ClassOf(control);
  const LONG style = GetWindowLongW(control, GWL_STYLE);
  if (name == L"Button" && (style & WS_VISIBLE) != 0) seen.buttons.push_back(TextOf(control));
  if (name != L"Static") return TRUE;
  if ((style & SS_TYPEMASK) == SS_ICON) {
    seen.icon = reinterpret_cast<HANDLE>(SendMessageW(control, STM_GETICON, 0, 0));
  } else {
    seen.text += TextOf(control);
  }
  return TRUE;
}

// Waits until a dialog is complete and active, and presses its only button.
LRESULT CALLBACK SeeBox(int code, WPARAM window, LPARAM details) {
  auto* const dialog = reinterpret_cast<HWND>(window);
  if (code == HCBT_ACTIVATE && ClassOf(dialog) == L"#32770" && ++seen.boxes == 1) {
    seen.caption = TextOf(dialog);
    EnumChildWindows(dialog, SeeControl, 0);
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }
  return CallNextHookEx(nullptr, code, window, details);
}

TEST(MessageBoxTest, HasTheExclamationIconOneButtonAndTheDefaultCaption) {
  HHOOK const hook = SetWindowsHookExW(WH_CBT, SeeBox, nullptr, GetCurrentThreadId());
  ASSERT_NE(hook, nullptr);
  platform::MachineProbe().ShowWarning(u"Drive information for drive C:\\ has caused an error.");
  UnhookWindowsHookEx(hook);
  EXPECT_EQ(seen.boxes, 1);
  EXPECT_EQ(seen.caption, L"Error");
  EXPECT_EQ(seen.text, L"Drive information for drive C:\\ has caused an error.");
  EXPECT_EQ(seen.buttons, std::vector<std::wstring>{L"OK"});
  EXPECT_NE(seen.icon, nullptr);
  EXPECT_EQ(seen.icon, LoadIconA(nullptr, IDI_EXCLAMATION));
  EXPECT_NE(seen.icon, LoadIconA(nullptr, IDI_ERROR));
}

}  // namespace
}  // namespace latchkey::test
