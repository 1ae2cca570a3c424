// Late binding: IDispatch over the type information of the DLL's own type library, which the
// classes also expose.
#pragma once

#include "com/windows/classes.h"

namespace latchkey::com {

// One call of IDispatch::Invoke, without its arguments.
struct DispatchCall {
  const ClassDescription& description;
  IDispatch* object;  // the dual interface that the member belongs to
  DISPID member;
  LCID locale;
  WORD flags;
};

// IDispatch::GetTypeInfo. DISP_E_BADINDEX for an index other than 0.
[[nodiscard]] HRESULT DescribeInterface(const ClassDescription& description, UINT index,
                                        ITypeInfo** typeInfo) noexcept;

// IProvideClassInfo::GetClassInfo: the class itself, which names its default interface.
[[nodiscard]] HRESULT DescribeClass(const ClassDescription& description,
                                    ITypeInfo** typeInfo) noexcept;

// IDispatch::GetIDsOfNames, by InterfaceMembers::FindIds. The number of an unknown name is
// DISPID_UNKNOWN.
[[nodiscard]] HRESULT FindDispatchIds(const ClassDescription& description, REFIID reserved,
                                      LPOLESTR* names, UINT count, DISPID* ids) noexcept;

// IDispatch::Invoke. Any of the pointers may be null. A fault is returned as DISP_E_EXCEPTION with
// its HRESULT, source and description in `exception`; arguments that do not fit, as one of the
// DISP_E codes (dispatch_arguments.h).
[[nodiscard]] HRESULT InvokeMember(const DispatchCall& call, const DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept;

}  // namespace latchkey::com
