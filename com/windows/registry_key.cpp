#include "com/windows/registry_key.h"

namespace latchkey::com {
namespace {

HKEY RootOf(RegistryScope scope) {
  return scope == RegistryScope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring ClassesPath(const std::wstring& path) { return L"Software\\Classes\\" + path; }

}  // namespace

HRESULT WriteRegistryText(RegistryScope scope, const std::wstring& path, const wchar_t* name,
                          const std::wstring& text) {
  RegistryKey key;
  LSTATUS status = RegCreateKeyExW(RootOf(scope), ClassesPath(path).c_str(), 0, nullptr, 0,
                                   KEY_SET_VALUE, nullptr, key.Put(), nullptr);
  if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
  const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  status = RegSetValueExW(key.Get(), name, 0, REG_SZ, bytes, size);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT DeleteRegistryTree(RegistryScope scope, const std::wstring& path) {
  const LSTATUS status = RegDeleteTreeW(RootOf(scope), ClassesPath(path).c_str());
  return status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

bool RegistryKeyExists(RegistryScope scope, const std::wstring& path, REGSAM view) {
  RegistryKey key;
  return RegOpenKeyExW(RootOf(scope), ClassesPath(path).c_str(), 0, KEY_QUERY_VALUE | view,
                       key.Put()) == ERROR_SUCCESS;
}

}  // namespace latchkey::com
