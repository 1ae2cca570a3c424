// advapi32's RtlGenRandom, replaced in the test program under its exported name.
#include <windows.h>

#include "tests/support/random_source_script.h"

extern "C" BOOLEAN NTAPI SystemFunction036(PVOID buffer, ULONG length) {
  using Function = BOOLEAN(NTAPI*)(PVOID, ULONG);
  auto* const script = latchkey::test::RandomSourceScript::Current();
  if (script != nullptr) {
    const long answer = script->Answer({static_cast<std::uint8_t*>(buffer), length});
    return answer == static_cast<long>(length) ? TRUE : FALSE;
  }
  // Through void*, since the compiler warns about casts between function types.
  auto* const address =
      reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"advapi32.dll"), "SystemFunction036"));
  return reinterpret_cast<Function>(address)(buffer, length);
}
