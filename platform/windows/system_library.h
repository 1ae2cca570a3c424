// System libraries loaded at run time.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace latchkey::platform {

struct LibraryTrait {
  using Type = HMODULE;
  static Type None() noexcept { return nullptr; }
  static void Close(Type library) noexcept { FreeLibrary(library); }
};
using UniqueLibrary = UniqueHandle<LibraryTrait>;

// Loads a library by its full path in the system folder, so that no other file of that name is
// loaded. Raises FileNotFound. Any thread, but not while the DLL is being loaded or unloaded.
[[nodiscard]] UniqueLibrary LoadSystemLibrary(const wchar_t* name);

// The address of a function. Raises DllFunctionNotFound.
[[nodiscard]] FARPROC FunctionOf(HMODULE library, const char* name);

}  // namespace latchkey::platform
