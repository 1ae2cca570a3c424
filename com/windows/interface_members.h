// What late-bound clients can call of a class, and by which names.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "com/windows/automation_owners.h"
#include "com/windows/classes.h"
#include "com/windows/function_descriptions.h"

namespace latchkey::com {

// The members of a dual interface as the type library describes them, read from there once: asking
// it again each time takes longer than a call. Constant afterwards: any thread may look.
class InterfaceMembers {
 public:
  // The interface's own members, by what describes its vtable slots. Raises bad_alloc.
  [[nodiscard]] HRESULT Read(UniqueInterface<ITypeInfo> slots);

  // The rule of IDispatch::GetIDsOfNames: the first name is a member's and gives its number, the
  // others are its arguments' and give their positions, upper or lower case. What is not found
  // gives DISPID_UNKNOWN, and the result is then DISP_E_UNKNOWNNAME. No name may be null.
  [[nodiscard]] HRESULT FindIds(std::span<const LPOLESTR> names, DISPID* ids) const noexcept;

  // The function that has that number and is of one of these kinds (INVOKEKIND); null for none.
  [[nodiscard]] const FUNCDESC* FindFunction(DISPID id, int kinds) const noexcept;

 private:
  struct Names {
    DISPID id;
    std::vector<std::wstring> all;  // the member's, then its arguments'; in lower case
  };

  [[nodiscard]] HRESULT ReadNames(const FUNCDESC& function);

  UniqueInterface<ITypeInfo> slots_;
  std::vector<UniqueFunction> functions_;
  std::vector<Names> names_;
};

// The members of a class's dual interface, read by the first caller and kept for all threads until
// the last use of the module ends (module.h). The caller must hold such a use. Raises bad_alloc.
[[nodiscard]] HRESULT MembersOf(const ClassDescription& description,
                                const InterfaceMembers** members);

// Gives away the members that are kept, null for a class that has none: for the last use of the
// module.
using MembersOfClasses = std::array<std::unique_ptr<const InterfaceMembers>, kClassCount>;
[[nodiscard]] MembersOfClasses TakeMembers() noexcept;

}  // namespace latchkey::com
