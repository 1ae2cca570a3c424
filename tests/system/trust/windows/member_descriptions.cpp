#include "tests/system/trust/windows/member_descriptions.h"

#include <cstdio>
#include <optional>

namespace latchkey::test {
namespace {

struct FunctionTrait {
  struct Type {
    ITypeInfo* typeInfo;
    FUNCDESC* function;
    friend bool operator==(const Type&, const Type&) = default;
  };
  static Type None() noexcept { return {nullptr, nullptr}; }
  static void Close(Type type) noexcept { type.typeInfo->ReleaseFuncDesc(type.function); }
};
using UniqueFunction = UniqueHandle<FunctionTrait>;

bool IsByteArray(const TYPEDESC& type) {
  return type.vt == VT_SAFEARRAY && type.lptdesc->vt == VT_UI1;
}

std::optional<Takes> TakesOf(const TYPEDESC& type) {
  switch (type.vt) {
    case VT_BSTR:
      return Takes::Text;
    case VT_I2:
      return Takes::Integer;
    case VT_I4:
      return Takes::Long;
    case VT_BOOL:
      return Takes::Flag;
    case VT_PTR:
      if (IsByteArray(*type.lptdesc)) return Takes::Array;
      if (type.lptdesc->vt == VT_BOOL) return Takes::FlagByReference;
      if (type.lptdesc->vt == VT_VARIANT) return Takes::Any;
      [[fallthrough]];
    default:
      return std::nullopt;
  }
}

bool Gives(const TYPEDESC& type, VARTYPE result) {
  if (type.vt == VT_VOID) return result == VT_EMPTY;
  if (IsByteArray(type)) return result == (VT_ARRAY | VT_UI1);
  return type.vt == result || type.vt == VT_VARIANT;
}

bool HasArguments(const FUNCDESC& function, const Member& member) {
  if (static_cast<std::size_t>(function.cParams) != member.arguments.size()) return false;
  for (std::size_t i = 0; i < member.arguments.size(); ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    const bool optional = (parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
    if (TakesOf(parameter.tdesc) != member.arguments[i] || optional != (i >= member.required)) {
      return false;
    }
  }
  return true;
}

bool HasName(ITypeInfo* typeInfo, const Member& member) {
  BSTR name = nullptr;
  return SUCCEEDED(typeInfo->GetDocumentation(member.id, &name, nullptr, nullptr, nullptr)) &&
         Take(name) == member.name;
}

// The functions after those that every dual interface inherits.
std::vector<UniqueFunction> FunctionsOf(ITypeInfo* typeInfo) {
  std::vector<UniqueFunction> functions;
  for (UINT i = 0;; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(typeInfo->GetFuncDesc(i, &function))) return functions;
    UniqueFunction owner({typeInfo, function});
    if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0) functions.push_back(std::move(owner));
  }
}

}  // namespace

bool AreAsDescribed(std::span<const Member> members, IDispatch* object) {
  ITypeInfo* typeInfo = nullptr;
  if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &typeInfo))) return false;
  const UniqueInterface<ITypeInfo> owner(typeInfo);
  const auto functions = FunctionsOf(typeInfo);
  bool equal = functions.size() == members.size();
  std::printf("%zu members, %zu described\n", members.size(), functions.size());
  for (std::size_t i = 0; i < functions.size() && i < members.size(); ++i) {
    const FUNCDESC& function = *functions[i].Get().function;
    const Member& member = members[i];
    if (function.memid == member.id && HasName(typeInfo, member) &&
        function.invkind == static_cast<INVOKEKIND>(member.kind) &&
        HasArguments(function, member) && Gives(function.elemdescFunc.tdesc, member.result)) {
      continue;
    }
    std::printf("%ls is described otherwise\n", member.name);
    equal = false;
  }
  return equal;
}

}  // namespace latchkey::test
