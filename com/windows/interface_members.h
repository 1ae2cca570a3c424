// The members of a class that late-bound clients can call, with their names.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "com/windows/automation_owners.h"
#include "com/windows/classes.h"

namespace latchkey::com {

// Returns a description to its type information.
struct DescriptionDeleter {
  ITypeInfo* typeInfo;
  void operator()(TYPEATTR* attributes) const noexcept { typeInfo->ReleaseTypeAttr(attributes); }
  void operator()(FUNCDESC* function) const noexcept { typeInfo->ReleaseFuncDesc(function); }
};
using UniqueFunction = std::unique_ptr<FUNCDESC, DescriptionDeleter>;

// The members of a dual interface, read from the type library once, since reading them takes longer
// than a call. Constant afterwards; usable from any thread.
class InterfaceMembers {
 public:
  // Reads the interface's own members from the description of its vtable slots. Raises bad_alloc.
  [[nodiscard]] HRESULT Read(UniqueInterface<ITypeInfo> slots);

  // As IDispatch::GetIDsOfNames: the first name is a member's and gives its number, the others are
  // its arguments' and give their positions, in upper or lower case. An unknown name gives
  // DISPID_UNKNOWN, and the result is then DISP_E_UNKNOWNNAME. No name may be null.
  [[nodiscard]] HRESULT FindIds(std::span<const LPOLESTR> names, DISPID* ids) const noexcept;

  // The function with that number and one of these kinds (INVOKEKIND); null if none exists.
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

// Takes the kept members away, null for a class without any: for the last use of the module.
using MembersOfClasses = std::array<std::unique_ptr<const InterfaceMembers>, kClassCount>;
[[nodiscard]] MembersOfClasses TakeMembers() noexcept;

}  // namespace latchkey::com
