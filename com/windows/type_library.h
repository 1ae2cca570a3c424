// The type library in the DLL's own resources: the source of all late binding, which thus works
// without registration too.
#pragma once

#include "com/windows/automation_owners.h"
#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// The type library, loaded by the first caller and kept for all threads until the last use of the
// module ends (module.h). The caller must hold such a use and does not get a reference. Raises
// bad_alloc.
[[nodiscard]] HRESULT OwnTypeLibrary(ITypeLib** library);

// The type information of a class, or of a dual interface for late-bound callers. The caller
// releases it. Raises bad_alloc.
[[nodiscard]] HRESULT TypeInfoOf(REFGUID id, ITypeInfo** typeInfo);

// The type information of a dual interface's vtable slots: its own members, without those of
// IDispatch. The caller releases it. Raises bad_alloc.
[[nodiscard]] HRESULT SlotInfoOf(REFIID interfaceId, ITypeInfo** typeInfo);

// Takes the kept type library away, null if none: for the last use of the module.
[[nodiscard]] UniqueInterface<ITypeLib> TakeTypeLibrary() noexcept;

}  // namespace latchkey::com
