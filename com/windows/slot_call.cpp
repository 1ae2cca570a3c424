#include "com/windows/slot_call.h"

#include <vector>

#include "com/windows/variant_access.h"

namespace latchkey::com {
namespace {

// The last parameter if that is the result, otherwise null.
const ELEMDESC* ResultParameter(const FUNCDESC& function) {
  if (function.cParams == 0) return nullptr;
  const ELEMDESC& last = function.lprgelemdescParam[function.cParams - 1];
  return (last.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0 ? &last : nullptr;
}

// The type to which a result points.
VARTYPE ResultType(const ELEMDESC& parameter) {
  const TYPEDESC& type = *parameter.tdesc.lptdesc;
  return type.vt == VT_SAFEARRAY ? static_cast<VARTYPE>(VT_ARRAY | type.lptdesc->vt) : type.vt;
}

}  // namespace

std::size_t ArgumentCount(const FUNCDESC& function) noexcept {
  const auto parameters = static_cast<std::size_t>(function.cParams);
  return ResultParameter(function) != nullptr ? parameters - 1 : parameters;
}

HRESULT CallSlot(IDispatch* object, const FUNCDESC& function, std::span<VARIANT> arguments,
                 VARIANT& result) {
  std::vector<VARIANT*> pointers;
  std::vector<VARTYPE> types;
  const auto pass = [&](VARIANT& argument) {
    pointers.push_back(&argument);
    types.push_back(V_VT(&argument));
  };
  for (VARIANT& argument : arguments) pass(argument);
  VARIANT resultReference = {};
  if (const ELEMDESC* const parameter = ResultParameter(function)) {
    const VARTYPE type = ResultType(*parameter);
    resultReference = ReferenceTo(result, type);
    if (type != VT_VARIANT) V_VT(&result) = type;
    pass(resultReference);
  }
  VARIANT returned = {};
  const HRESULT called =
      DispCallFunc(object, static_cast<ULONG_PTR>(function.oVft), function.callconv, VT_ERROR,
                   static_cast<UINT>(types.size()), types.data(), pointers.data(), &returned);
  return FAILED(called) ? called : V_ERROR(&returned);
}

}  // namespace latchkey::com
