#include "com/windows/variant_access.h"

#include "com/windows/safe_array.h"
#include "com/windows/text_conversion.h"
#include "latchkey/fault.h"

namespace latchkey::com {
namespace {

// Two levels are enough for valid clients: a variable that was itself passed by reference.
constexpr int kMostReferences = 8;

bool IsNullReference(const VARIANT& value) {
  return (V_VT(&value) & VT_BYREF) != 0 && V_BYREF(&value) == nullptr;
}

[[noreturn]] void RaiseConversionFailure(HRESULT failure) {
  if (failure == E_OUTOFMEMORY) throw Fault(FaultNumber::OutOfMemory);
  throw Fault(failure == DISP_E_OVERFLOW ? FaultNumber::Overflow : FaultNumber::TypeMismatch);
}

}  // namespace

OwnedVariant::~OwnedVariant() {
  if (V_VT(&value_) == VT_BSTR) {
    const VARIANT text = Release();
    static_cast<void>(UniqueBstr(V_BSTR(&text)));
  }
  if (V_VT(&value_) == (VT_ARRAY | VT_UI1)) WipeSafeArray(V_ARRAY(&value_));
  VariantClear(&value_);
}

VARIANT OwnedVariant::Release() noexcept {
  const VARIANT value = value_;
  VariantInit(&value_);
  return value;
}

VARIANT* LookThrough(VARIANT* value) noexcept {
  for (int i = 0; i < kMostReferences; ++i) {
    if (value == nullptr || V_VT(value) != (VT_BYREF | VT_VARIANT)) return value;
    value = V_VARIANTREF(value);
  }
  return nullptr;
}

VARIANT ReferenceTo(VARIANT& value, VARTYPE type) noexcept {
  VARIANT reference;
  VariantInit(&reference);
  V_VT(&reference) = static_cast<VARTYPE>(VT_BYREF | type);
  V_BYREF(&reference) = type == VT_VARIANT ? static_cast<void*>(&value) : &V_UI1(&value);
  return reference;
}

HRESULT ConvertVariant(VARIANT& target, VARIANT& source, LCID locale, VARTYPE type) noexcept {
  if (IsNullReference(source)) return DISP_E_TYPEMISMATCH;
  const HRESULT converted = VariantChangeTypeEx(&target, &source, locale, VARIANT_ALPHABOOL, type);
  if (SUCCEEDED(converted) || converted == DISP_E_OVERFLOW || converted == E_OUTOFMEMORY) {
    return converted;
  }
  return DISP_E_TYPEMISMATCH;
}

bool ConvertToText(OwnedVariant& text, VARIANT& source, LCID locale) {
  if (IsNullReference(source)) throw Fault(FaultNumber::TypeMismatch);
  if (V_VT(&source) == VT_NULL || (V_VT(&source) & ~VT_BYREF) == VT_BSTR) return false;
  const HRESULT converted = ConvertVariant(text.Get(), source, locale, VT_BSTR);
  if (FAILED(converted)) RaiseConversionFailure(converted);
  return true;
}

VariantText::VariantText(VARIANT* value) {
  VARIANT* const seen = LookThrough(value);
  if (seen == nullptr) throw Fault(FaultNumber::TypeMismatch);
  if (ConvertToText(converted_, *seen, LOCALE_USER_DEFAULT)) {
    value_ = ViewOf(V_BSTR(&converted_.Get()));
  } else if (V_VT(seen) == VT_NULL) {
    value_ = Null{};
  } else {
    value_ = ViewOf(V_VT(seen) == VT_BSTR ? V_BSTR(seen) : *V_BSTRREF(seen));
  }
}

}  // namespace latchkey::com
