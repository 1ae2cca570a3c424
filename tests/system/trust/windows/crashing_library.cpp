// A library that writes through a null pointer when it is told of the end that the function Crash
// has named.
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
