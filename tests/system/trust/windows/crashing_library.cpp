// A library that writes through a null pointer at the end (of module, thread or process) that was
// named in a call of its function Crash.
#include <windows.h>

namespace {

DWORD crashingReason = MAXDWORD;

}  // namespace

extern "C" __declspec(dllexport) void Crash(DWORD reason) { crashingReason = reason; }

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
  volatile DWORD* const nowhere = nullptr;
  if (reason == crashingReason) *nowhere = reason;
  return TRUE;
}
