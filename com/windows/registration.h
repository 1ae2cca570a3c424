// The component's entries in the registry.
#pragma once

#include "com/windows/registry_key.h"

namespace latchkey::com {

// Enters the type library and, for each class, its CLSID key (server, apartment threading, names,
// type library, version) and its names with and without version. Entries of an earlier registration
// are overwritten. On failure everything is removed again and the result is the failure.
// Raises bad_alloc.
[[nodiscard]] HRESULT RegisterServer(RegistryScope scope);

// Removes all of these; missing entries count as removed. Continues after a failure and returns the
// first one. The names stay while programs of the other bitness need them: the registry has them
// once for both. Raises bad_alloc.
[[nodiscard]] HRESULT UnregisterServer(RegistryScope scope);

// DllInstall: registers or unregisters, for the user if `options` is "user" in any case, and for
// the machine if it is empty or null. Returns E_INVALIDARG for other options, which change nothing.
// Raises bad_alloc.
[[nodiscard]] HRESULT InstallServer(bool install, const wchar_t* options);

}  // namespace latchkey::com
