#include "com/windows/function_descriptions.h"

#include <new>

namespace latchkey::com {
namespace {

// Running out of memory is not the same as having no description.
bool Given(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  return SUCCEEDED(result);
}

}  // namespace

UniqueAttributes AttributesOf(ITypeInfo& typeInfo) {
  TYPEATTR* attributes = nullptr;
  const bool given = Given(typeInfo.GetTypeAttr(&attributes));
  return {given ? attributes : nullptr, DescriptionDeleter{&typeInfo}};
}

UniqueFunction FunctionAt(ITypeInfo& typeInfo, UINT index) {
  FUNCDESC* function = nullptr;
  const bool given = Given(typeInfo.GetFuncDesc(index, &function));
  return {given ? function : nullptr, DescriptionDeleter{&typeInfo}};
}

}  // namespace latchkey::com
