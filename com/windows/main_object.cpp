#include "com/windows/main_object.h"

#include "com/windows/text_conversion.h"

namespace latchkey::com {

STDMETHODIMP MainObject::get_ErrorLocationID(short* result) noexcept {
  return Run(result, [&] { return main_.ErrorLocationID(); });
}

STDMETHODIMP MainObject::get_ErrorType(short* result) noexcept {
  return Run(result, [&] { return main_.ErrorType(); });
}

STDMETHODIMP MainObject::get_RTErrorNumber(LONG* result) noexcept {
  return Run(result, [&] { return main_.RTErrorNumber(); });
}

STDMETHODIMP MainObject::get_RTErrorDescription(BSTR* result) noexcept {
  return Run(result, [&] { return ToBstr(main_.RTErrorDescription()); });
}

STDMETHODIMP MainObject::get_AppErrorNumber(LONG* result) noexcept {
  return Run(result, [&] { return main_.AppErrorNumber(); });
}

STDMETHODIMP MainObject::get_AppErrorDescription(BSTR* result) noexcept {
  return Run(result, [&] { return ToBstr(main_.AppErrorDescription()); });
}

STDMETHODIMP MainObject::get_ErrorExists(VARIANT_BOOL* result) noexcept {
  return Run(result, [&] { return ToVariantBool(main_.ErrorExists()); });
}

STDMETHODIMP MainObject::get_ErrorMachineState(short* result) noexcept {
  return Run(result, [&] { return main_.ErrorMachineState(); });
}

STDMETHODIMP MainObject::DoesInternetConnectionExist(VARIANT_BOOL* result) noexcept {
  return Run(result, [&] { return ToVariantBool(main_.DoesInternetConnectionExist()); });
}

}  // namespace latchkey::com
