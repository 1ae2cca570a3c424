// Keys of the registry.
#pragma once

#include <string>

#include "base/unique_handle.h"
#include "com/windows/automation_prelude.h"

namespace latchkey::com {

struct RegistryKeyTrait {
  using Type = HKEY;
  static Type None() noexcept { return nullptr; }
  static void Close(Type key) noexcept { RegCloseKey(key); }
};

using RegistryKey = UniqueHandle<RegistryKeyTrait>;

// The scope of entries: all users of the machine, which requires administrator rights to write, or
// the current user.
enum class RegistryScope { Machine, User };

// All paths are below Software\Classes of the machine or of the user. (HKEY_CLASSES_ROOT merges the
// two, and the target of a write depends on existing keys.) The results are success or a failure
// HRESULT.

// Writes a text, making the key if it is missing. A null name is the key's default value.
[[nodiscard]] HRESULT WriteRegistryText(RegistryScope scope, const std::wstring& path,
                                        const wchar_t* name, const std::wstring& text);

// Deletes a key and all keys below it. A missing key counts as deleted.
[[nodiscard]] HRESULT DeleteRegistryTree(RegistryScope scope, const std::wstring& path);

// Whether a key exists for programs of the DLL's own bitness or, with KEY_WOW64_32KEY or
// KEY_WOW64_64KEY, for those of the other bitness.
[[nodiscard]] bool RegistryKeyExists(RegistryScope scope, const std::wstring& path,
                                     REGSAM view = 0);

}  // namespace latchkey::com
