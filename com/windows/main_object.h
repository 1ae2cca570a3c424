// clsMain for COM clients.
#pragma once

#include "com/windows/automation_object.h"
#include "com/windows/latchkey.h"
#include "latchkey/cls_main.h"

namespace latchkey::com {

class MainObject final : public AutomationObject<_clsMain> {
 public:
  MainObject() : AutomationObject(kMainClass) {}

  STDMETHODIMP get_ErrorLocationID(short* result) noexcept override;
  STDMETHODIMP get_ErrorType(short* result) noexcept override;
  STDMETHODIMP get_RTErrorNumber(LONG* result) noexcept override;
  STDMETHODIMP get_RTErrorDescription(BSTR* result) noexcept override;
  STDMETHODIMP get_AppErrorNumber(LONG* result) noexcept override;
  STDMETHODIMP get_AppErrorDescription(BSTR* result) noexcept override;
  STDMETHODIMP get_ErrorExists(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_ErrorMachineState(short* result) noexcept override;
  STDMETHODIMP DoesInternetConnectionExist(VARIANT_BOOL* result) noexcept override;

 private:
  latchkey::clsMain main_;
};

}  // namespace latchkey::com
