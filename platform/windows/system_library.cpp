#include "platform/windows/system_library.h"

#include <string>

#include "latchkey/fault.h"

namespace latchkey::platform {
namespace {

std::wstring SystemFolder() {
  std::wstring folder(MAX_PATH, L'\0');
  UINT length = GetSystemDirectoryW(folder.data(), MAX_PATH);
  if (length > MAX_PATH) {  // the needed length, with its NUL
    folder.resize(length);
    length = GetSystemDirectoryW(folder.data(), length);
  }
  if (length == 0 || length > folder.size()) throw Fault(FaultNumber::FileNotFound);
  folder.resize(length);
  return folder;
}

// Restricts the search for the library's own imports to the system folder. A Windows 7 without the
// update that added this flag (and AddDllDirectory) searches the library's folder first, which is
// the same.
DWORD SearchFlag() {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  const bool known = GetProcAddress(kernel, "AddDllDirectory") != nullptr;
  return known ? LOAD_LIBRARY_SEARCH_SYSTEM32 : LOAD_WITH_ALTERED_SEARCH_PATH;
}

}  // namespace

UniqueLibrary LoadSystemLibrary(const wchar_t* name) {
  const std::wstring path = SystemFolder() + L"\\" + name;
  UniqueLibrary library(LoadLibraryExW(path.c_str(), nullptr, SearchFlag()));
  if (!library) throw Fault(FaultNumber::FileNotFound);
  return library;
}

FARPROC FunctionOf(HMODULE library, const char* name) {
  const FARPROC function = GetProcAddress(library, name);
  if (function == nullptr) throw Fault(FaultNumber::DllFunctionNotFound);
  return function;
}

}  // namespace latchkey::platform
