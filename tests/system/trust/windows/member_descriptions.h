// The descriptions of the members in the component's type library.
#pragma once

#include "tests/system/trust/windows/late_bound_call.h"

namespace latchkey::test {

// Whether these are all the members of the object in the type library, each with its number, kind,
// arguments and result. Prints the differences.
[[nodiscard]] bool AreAsDescribed(std::span<const Member> members, IDispatch* object);

}  // namespace latchkey::test
