#include "com/windows/dispatch.h"

#include <algorithm>

#include "com/windows/automation_owners.h"
#include "com/windows/dispatch_arguments.h"
#include "com/windows/interface_members.h"
#include "com/windows/method_call.h"
#include "com/windows/slot_call.h"
#include "com/windows/type_library.h"
#include "com/windows/variant_access.h"

namespace latchkey::com {
namespace {

// Scripts request a property and a method at once, and choose between the two kinds of property put
// by the value rather than by the property.
int KindsWanted(WORD flags) {
  const int puts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  return (flags & puts) != 0 ? flags | puts : flags;
}

// The error information that a failed method left on this thread, for a late-bound caller.
HRESULT ToException(HRESULT failure, EXCEPINFO& exception) {
  exception.scode = failure;
  UniqueInterface<IErrorInfo> information;
  if (GetErrorInfo(0, information.Put()) == S_OK) {
    information.Get()->GetSource(&exception.bstrSource);
    information.Get()->GetDescription(&exception.bstrDescription);
  }
  return DISP_E_EXCEPTION;
}

// The type information for one of the class's identifiers.
HRESULT Describe(const ClassDescription& description, const GUID& id,
                 ITypeInfo** typeInfo) noexcept {
  if (typeInfo == nullptr) return E_POINTER;
  *typeInfo = nullptr;
  HRESULT found = S_OK;
  const HRESULT ran = RunMethod(description, [&] { found = TypeInfoOf(id, typeInfo); });
  return FAILED(ran) ? ran : found;
}

void FreeException(EXCEPINFO& exception) {
  const UniqueBstr source(exception.bstrSource);
  const UniqueBstr description(exception.bstrDescription);
}

// Raises the exceptions of DispatchArguments.
HRESULT CallMember(const DispatchCall& call, const DISPPARAMS& given, VARIANT& result,
                   EXCEPINFO& exception, UINT& badArgument) {
  const InterfaceMembers* members = nullptr;
  const HRESULT found = MembersOf(call.description, &members);
  if (FAILED(found)) return found;
  const FUNCDESC* const function = members->FindFunction(call.member, KindsWanted(call.flags));
  if (function == nullptr) return DISP_E_MEMBERNOTFOUND;
  DispatchArguments arguments(*function, call.locale);
  const HRESULT taken = arguments.Take(given, badArgument);
  if (FAILED(taken)) return taken;
  const HRESULT called = CallSlot(call.object, *function, arguments.Complete(), result);
  return FAILED(called) ? ToException(called, exception) : called;
}

}  // namespace

HRESULT DescribeInterface(const ClassDescription& description, UINT index,
                          ITypeInfo** typeInfo) noexcept {
  if (index == 0) return Describe(description, description.interfaceId, typeInfo);
  if (typeInfo == nullptr) return E_POINTER;
  *typeInfo = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT DescribeClass(const ClassDescription& description, ITypeInfo** typeInfo) noexcept {
  return Describe(description, description.classId, typeInfo);
}

HRESULT FindDispatchIds(const ClassDescription& description, REFIID reserved, LPOLESTR* names,
                        UINT count, DISPID* ids) noexcept {
  if (!IsEqualIID(reserved, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (std::find(names, names + count, nullptr) != names + count) return DISP_E_UNKNOWNNAME;
  HRESULT found = S_OK;
  const HRESULT ran = RunMethod(description, [&] {
    const InterfaceMembers* members = nullptr;
    found = MembersOf(description, &members);
    if (SUCCEEDED(found)) found = members->FindIds({names, count}, ids);
  });
  return FAILED(ran) ? ran : found;
}

HRESULT InvokeMember(const DispatchCall& call, const DISPPARAMS* arguments, VARIANT* result,
                     EXCEPINFO* exception, UINT* badArgument) noexcept {
  if (arguments == nullptr) return E_INVALIDARG;
  OwnedVariant value;
  EXCEPINFO raised = {};
  UINT bad = 0;
  HRESULT outcome = S_OK;
  const HRESULT ran = RunMethod(
      call.description, [&] { outcome = CallMember(call, *arguments, value.Get(), raised, bad); });
  if (FAILED(ran)) outcome = ToException(ran, raised);

  // The result is set last, since it may be one of the arguments. A failed call may leave a partial
  // result.
  if (result != nullptr) *result = SUCCEEDED(outcome) ? value.Release() : VARIANT{};
  if (badArgument != nullptr) *badArgument = bad;
  if (exception != nullptr) {
    *exception = raised;
  } else {
    FreeException(raised);
  }
  return outcome;
}

}  // namespace latchkey::com
