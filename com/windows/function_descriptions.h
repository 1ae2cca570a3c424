// Owners of the descriptions that type information returns.
#pragma once

#include <memory>

#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// Returns a description to its type information.
struct DescriptionDeleter {
  ITypeInfo* typeInfo;
  void operator()(TYPEATTR* attributes) const noexcept { typeInfo->ReleaseTypeAttr(attributes); }
  void operator()(FUNCDESC* function) const noexcept { typeInfo->ReleaseFuncDesc(function); }
};
using UniqueAttributes = std::unique_ptr<TYPEATTR, DescriptionDeleter>;
using UniqueFunction = std::unique_ptr<FUNCDESC, DescriptionDeleter>;

// Null if the description does not exist. Raises bad_alloc. The type information must outlive them.
[[nodiscard]] UniqueAttributes AttributesOf(ITypeInfo& typeInfo);
[[nodiscard]] UniqueFunction FunctionAt(ITypeInfo& typeInfo, UINT index);

}  // namespace latchkey::com
