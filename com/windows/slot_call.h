// Calls of a dual interface's members through their vtable slots, led by the type information.
//
// The system's own ITypeInfo::Invoke does the same, but by way of copies of texts that it frees
// without wiping them.
#pragma once

#include <cstddef>
#include <span>

#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// The number of arguments that a caller gives: all parameters of the slot but the result.
[[nodiscard]] std::size_t ArgumentCount(const FUNCDESC& function) noexcept;

// Calls a slot. `arguments` are all of them, each of the declared type; the result goes straight
// into `result`, which must be empty and may hold half a result after a failure. The HRESULT is the
// member's own. Raises bad_alloc.
[[nodiscard]] HRESULT CallSlot(IDispatch* object, const FUNCDESC& function,
                               std::span<VARIANT> arguments, VARIANT& result);

}  // namespace latchkey::com
