#include "cli/platform/terminal.h"

#include <windows.h>

#include <array>

#include "cli/platform/windows/handles.h"
#include "cli/platform/windows/wide_secret.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

constexpr unsigned kUsualColumns = 80;
constexpr const char* kTerminal = "the console";

HANDLE HandleOf(StandardStream stream) noexcept {
  return GetStdHandle(stream == StandardStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

UniqueFile OpenConsole(const wchar_t* name) {
  return Owned(CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, OPEN_EXISTING, 0, nullptr));
}

// The console mode that Ctrl-C must restore. The handler runs on a separate thread, and only while
// echo is off.
HANDLE silentConsole = nullptr;
DWORD modeBefore = 0;

BOOL WINAPI RestoreConsole(DWORD /*event*/) {
  SetConsoleMode(silentConsole, modeBefore);
  return FALSE;
}

// Keeps typed characters from being shown while it lives.
class EchoOff {
 public:
  explicit EchoOff(HANDLE console) {
    if (!GetConsoleMode(console, &modeBefore)) ThrowLastError("cannot use", kTerminal);
    silentConsole = console;
    SetConsoleCtrlHandler(RestoreConsole, TRUE);
    const DWORD kept = modeBefore & ~static_cast<DWORD>(ENABLE_ECHO_INPUT);
    if (SetConsoleMode(console, kept | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT)) return;
    const DWORD reason = GetLastError();
    SetConsoleCtrlHandler(RestoreConsole, FALSE);
    throw FileError(static_cast<int>(reason), "cannot use", kTerminal);
  }
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;
  ~EchoOff() {
    SetConsoleMode(silentConsole, modeBefore);
    SetConsoleCtrlHandler(RestoreConsole, FALSE);
  }
};

WipedBytes ReadLine(HANDLE console, TextForm form) {
  constexpr wchar_t kControlZ = 0x1A;
  WipedVector<wchar_t> line;
  for (;;) {
    wchar_t character = 0;
    DWORD count = 0;
    if (!ReadConsoleW(console, &character, 1, &count, nullptr)) {
      ThrowLastError("cannot read", kTerminal);
    }
    const bool ended = count == 0 || (line.empty() && character == kControlZ);
    // A line ends in CR LF. Both are read, so that the next line starts clean.
    if (character == L'\r') continue;
    if (ended || character == L'\n') return BytesOf(line, form, kTerminal);
    line.push_back(character);
  }
}

bool WriteConsole(HANDLE console, std::string_view text) noexcept {
  const std::wstring wide = platform::Widened(text);
  DWORD written = 0;
  return WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr) !=
         FALSE;
}

bool WriteBytes(HANDLE file, std::string_view text) noexcept {
  while (!text.empty()) {
    DWORD written = 0;
    if (!WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr)) {
      return false;
    }
    text.remove_prefix(written);
  }
  return true;
}

}  // namespace

bool IsTerminal(StandardStream stream) noexcept {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(stream), &mode) != FALSE;
}

unsigned TerminalColumns(StandardStream stream) noexcept {
  CONSOLE_SCREEN_BUFFER_INFO screen;
  if (!GetConsoleScreenBufferInfo(HandleOf(stream), &screen)) return kUsualColumns;
  return static_cast<unsigned>(screen.srWindow.Right - screen.srWindow.Left + 1);
}

bool WriteText(StandardStream stream, std::string_view text) noexcept {
  const HANDLE handle = HandleOf(stream);
  return IsTerminal(stream) ? WriteConsole(handle, text) : WriteBytes(handle, text);
}

std::optional<WipedBytes> ReadHiddenLine(const std::string& prompt, TextForm form) {
  const UniqueFile input = OpenConsole(L"CONIN$");
  const UniqueFile output = OpenConsole(L"CONOUT$");
  if (!input || !output) return std::nullopt;
  const EchoOff echoOff(HandleOf(input));
  FlushConsoleInputBuffer(HandleOf(input));
  if (!WriteConsole(HandleOf(output), prompt)) ThrowLastError("cannot write", kTerminal);
  std::optional<WipedBytes> line = ReadLine(HandleOf(input), form);
  WriteConsole(HandleOf(output), "\r\n");
  return line;
}

}  // namespace latchkey::cli
