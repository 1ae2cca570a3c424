// Calls of a dual interface's members through their vtable slots, described by type information.
//
// The system's ITypeInfo::Invoke does the same, but frees copies of texts without wiping them.
#pragma once

#include <cstddef>
#include <span>

#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// The number of arguments that a caller passes: all parameters of the slot except the result.
[[nodiscard]] std::size_t ArgumentCount(const FUNCDESC& function) noexcept;

// Calls a slot. `arguments` must be complete, each of the declared type. The member writes directly
// to `result`, which must be empty and may hold a partial result after a failure. Returns the
// member's own HRESULT. Raises bad_alloc.
[[nodiscard]] HRESULT CallSlot(IDispatch* object, const FUNCDESC& function,
                               std::span<VARIANT> arguments, VARIANT& result);

}  // namespace latchkey::com
