// The type library in the DLL's own resources: the source of all late binding, read from there so
// that it works without registration, too.
#pragma once

#include "com/windows/automation_owners.h"
#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// The type library, loaded by the first caller and kept for all threads until the last use of the
// module ends (module.h). The caller must hold such a use and gets no reference of its own. Raises
// bad_alloc.
[[nodiscard]] HRESULT OwnTypeLibrary(ITypeLib** library);

// What describes a class, or a dual interface to late-bound callers. The caller releases it.
// Raises bad_alloc.
[[nodiscard]] HRESULT TypeInfoOf(REFGUID id, ITypeInfo** typeInfo);

// What describes the vtable slots of a dual interface: its own members, without those of IDispatch.
// The caller releases it. Raises bad_alloc.
[[nodiscard]] HRESULT SlotInfoOf(REFIID interfaceId, ITypeInfo** typeInfo);

// Gives away the type library that is kept, null for none: for the last use of the module.
[[nodiscard]] UniqueInterface<ITypeLib> TakeTypeLibrary() noexcept;

}  // namespace latchkey::com
