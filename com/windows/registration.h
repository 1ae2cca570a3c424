// The component's entries in the registry.
#pragma once

#include "com/windows/registry_key.h"

namespace latchkey::com {

// Enters the type library and, for each class, its CLSID key (server, apartment threading, names,
// type library, version) and its names with and without version. Entries of an earlier registration
// are overwritten. On failure everything is removed again and the result is the failure.
// Raises bad_alloc.
[[nodiscard]] HRESULT RegisterServer(RegistryScope scope);

// Removes all of that; entries that are missing are removed already. Goes on behind a failure and
// returns the first one. The names stay while programs of the other bitness still need them: the
// registry holds them once for both. Raises bad_alloc.
[[nodiscard]] HRESULT UnregisterServer(RegistryScope scope);

// DllInstall: one of the two, for the user when `options` is "user" in any case, and for the
// machine when it is empty or null. E_INVALIDARG for other options, which change nothing. Raises
// bad_alloc.
[[nodiscard]] HRESULT InstallServer(bool install, const wchar_t* options);

}  // namespace latchkey::com
