// The members as the component's type library describes them.
#pragma once

#include "tests/system/trust/windows/late_bound_call.h"

namespace latchkey::test {

// Whether these are all the members that the type library tells of for the object, each with its
// number, kind, arguments and result. Prints those that are not.
[[nodiscard]] bool AreAsDescribed(std::span<const Member> members, IDispatch* object);

}  // namespace latchkey::test
