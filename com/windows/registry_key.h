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

// Whom entries are for: all users of the machine, which takes administrator rights to write, or the
// user whose program this is.
enum class RegistryScope { Machine, User };

// All paths are below Software\Classes of the machine or of the user. (HKEY_CLASSES_ROOT shows the
// two as one, and where it writes to depends on what is there.) The results are success or a
// failure HRESULT.

// Writes a text, making the key where it is missing. A null name is the key's default value.
[[nodiscard]] HRESULT WriteRegistryText(RegistryScope scope, const std::wstring& path,
                                        const wchar_t* name, const std::wstring& text);

// Deletes a key and all below it. A key that does not exist is deleted already.
[[nodiscard]] HRESULT DeleteRegistryTree(RegistryScope scope, const std::wstring& path);

// Whether a key exists, as programs of the DLL's own bitness see it or, with KEY_WOW64_32KEY or
// KEY_WOW64_64KEY, as those of the other bitness do.
[[nodiscard]] bool RegistryKeyExists(RegistryScope scope, const std::wstring& path,
                                     REGSAM view = 0);

}  // namespace latchkey::com
