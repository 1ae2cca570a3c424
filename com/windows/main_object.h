// clsMain for COM clients.
#pragma once

#include "com/windows/automation_object.h"
#include "com/windows/latchkey.h"
#include "com/windows/text_conversion.h"
#include "latchkey/cls_main.h"

namespace latchkey::com {

class MainObject final : public AutomationObject<_clsMain> {
 public:
  MainObject() : AutomationObject(kMainClass) {}

  STDMETHODIMP get_ErrorLocationID(short* result) noexcept override {
    return Run(result, [&] { return main_.ErrorLocationID(); });
  }
  STDMETHODIMP get_ErrorType(short* result) noexcept override {
    return Run(result, [&] { return main_.ErrorType(); });
  }
  STDMETHODIMP get_RTErrorNumber(LONG* result) noexcept override {
    return Run(result, [&] { return main_.RTErrorNumber(); });
  }
  STDMETHODIMP get_RTErrorDescription(BSTR* result) noexcept override {
    return Run(result, [&] { return ToBstr(main_.RTErrorDescription()); });
  }
  STDMETHODIMP get_AppErrorNumber(LONG* result) noexcept override {
    return Run(result, [&] { return main_.AppErrorNumber(); });
  }
  STDMETHODIMP get_AppErrorDescription(BSTR* result) noexcept override {
    return Run(result, [&] { return ToBstr(main_.AppErrorDescription()); });
  }
  STDMETHODIMP get_ErrorExists(VARIANT_BOOL* result) noexcept override {
    return Run(result, [&] { return ToVariantBool(main_.ErrorExists()); });
  }
  STDMETHODIMP get_ErrorMachineState(short* result) noexcept override {
    return Run(result, [&] { return main_.ErrorMachineState(); });
  }
  STDMETHODIMP DoesInternetConnectionExist(VARIANT_BOOL* result) noexcept override {
    return Run(result, [&] { return ToVariantBool(main_.DoesInternetConnectionExist()); });
  }

 private:
  latchkey::clsMain main_;
};

}  // namespace latchkey::com
