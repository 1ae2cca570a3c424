#include "com/windows/dispatch.h"

#include <algorithm>
#include <memory>
#include <new>

#include "com/windows/automation_owners.h"
#include "com/windows/dispatch_arguments.h"
#include "com/windows/method_call.h"
#include "com/windows/slot_call.h"
#include "com/windows/type_library.h"
#include "com/windows/variant_access.h"

namespace latchkey::com {
namespace {

// Gives descriptions back to the type information that they came from.
struct DescriptionDeleter {
  ITypeInfo* typeInfo;
  void operator()(TYPEATTR* attributes) const noexcept { typeInfo->ReleaseTypeAttr(attributes); }
  void operator()(FUNCDESC* function) const noexcept { typeInfo->ReleaseFuncDesc(function); }
};
using UniqueAttributes = std::unique_ptr<TYPEATTR, DescriptionDeleter>;
using UniqueFunction = std::unique_ptr<FUNCDESC, DescriptionDeleter>;

// Scripts ask for a property and a method at once, and tell the two kinds of property put apart by
// the value they hold rather than by the property.
int KindsWanted(WORD flags) {
  const int puts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  return (flags & puts) != 0 ? flags | puts : flags;
}

bool Answers(const FUNCDESC& function, const DispatchCall& call) {
  return function.memid == call.member && (function.invkind & KindsWanted(call.flags)) != 0;
}

// A description that there is no memory for is no description that there is not.
bool Given(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  return SUCCEEDED(result);
}

// Raises bad_alloc.
UniqueFunction FindFunction(ITypeInfo* typeInfo, const DispatchCall& call) {
  const DescriptionDeleter deleter = {typeInfo};
  TYPEATTR* attributes = nullptr;
  if (!Given(typeInfo->GetTypeAttr(&attributes))) return {nullptr, deleter};
  const UniqueAttributes owner(attributes, deleter);
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* described = nullptr;
    if (!Given(typeInfo->GetFuncDesc(i, &described))) continue;
    UniqueFunction function(described, deleter);
    if (Answers(*function, call)) return function;
  }
  return {nullptr, deleter};
}

// The error information that a failed method has left on this thread, for a late-bound caller.
HRESULT ToException(HRESULT failure, EXCEPINFO& exception) {
  exception.scode = failure;
  IErrorInfo* found = nullptr;
  if (GetErrorInfo(0, &found) == S_OK) {
    const UniqueInterface<IErrorInfo> information(found);
    found->GetSource(&exception.bstrSource);
    found->GetDescription(&exception.bstrDescription);
  }
  return DISP_E_EXCEPTION;
}

// What the type library says about one of the class's identifiers.
HRESULT Describe(const ClassDescription& description, const GUID& id,
                 ITypeInfo** typeInfo) noexcept {
  if (typeInfo == nullptr) return E_POINTER;
  *typeInfo = nullptr;
  HRESULT found = S_OK;
  const HRESULT ran = RunMethod(description, [&] { found = TypeInfoOf(id, typeInfo); });
  return FAILED(ran) ? ran : found;
}

void FreeException(EXCEPINFO& exception) {
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
}

// Raises what DispatchArguments raises.
HRESULT CallMember(const DispatchCall& call, const DISPPARAMS& given, VARIANT& result,
                   EXCEPINFO& exception, UINT& badArgument) {
  ITypeInfo* slots = nullptr;
  const HRESULT found = SlotInfoOf(call.description.interfaceId, &slots);
  if (FAILED(found)) return found;
  const UniqueInterface<ITypeInfo> typeInfo(slots);
  const UniqueFunction function = FindFunction(slots, call);
  if (!function) return DISP_E_MEMBERNOTFOUND;
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
  ITypeInfo* described = nullptr;
  const HRESULT found = DescribeInterface(description, 0, &described);
  if (FAILED(found)) return found;
  const UniqueInterface<ITypeInfo> typeInfo(described);
  return described->GetIDsOfNames(names, count, ids);
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

  // The result is set last: it may be one of the arguments. A failed call may have left half of
  // one.
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
