#include "com/windows/method_call.h"

#include "base/faults.h"
#include "com/windows/automation_owners.h"

namespace latchkey::com {
namespace {

constexpr ULONG kAutomationErrors = 0x800A0000;  // base of Visual Basic's error numbers

// An unset object here is always the error record; the description names it.
TextView DescriptionForClient(const Fault& fault) noexcept {
  if (fault.Number() != static_cast<std::int32_t>(FaultNumber::ObjectNotSet)) {
    return fault.Description();
  }
  return u"Object variable or With block variable not set: no clsMain exists on this thread";
}

void SetErrorInformation(const ClassDescription& source, const Fault& fault) noexcept {
  SetErrorInfo(0, nullptr);  // leaves no stale information if making a new one fails
  UniqueInterface<ICreateErrorInfo> created;
  if (FAILED(CreateErrorInfo(created.Put()))) return;
  const TextView text = DescriptionForClient(fault);
  const UniqueBstr description(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                                 static_cast<UINT>(text.size())));
  const UniqueBstr sourceName(SysAllocString(source.progId));
  created.Get()->SetGUID(source.interfaceId);
  created.Get()->SetSource(sourceName.Get());
  created.Get()->SetDescription(description.Get());
  UniqueInterface<IErrorInfo> readable;
  const HRESULT found =
      created.Get()->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(readable.Put()));
  if (SUCCEEDED(found)) SetErrorInfo(0, readable.Get());
}

}  // namespace

HRESULT ReportCurrentFault(const ClassDescription& source) noexcept {
  const Fault fault = CurrentFault();
  SetErrorInformation(source, fault);
  return static_cast<HRESULT>(kAutomationErrors + static_cast<ULONG>(fault.Number()));
}

HRESULT RefuseNullPointer() noexcept {
  SetErrorInfo(0, nullptr);
  return E_POINTER;
}

}  // namespace latchkey::com
