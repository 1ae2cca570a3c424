#include "com/windows/dispatch_arguments.h"

#include <new>

#include "com/windows/slot_call.h"
#include "latchkey/fault.h"

namespace latchkey::com {
namespace {

constexpr VARTYPE kByteArray = VT_ARRAY | VT_UI1;
constexpr USHORT kMayBeLeftOut = PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT;

bool IsPropertyPut(const FUNCDESC& function) {
  return (function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
}

bool IsList(const DISPPARAMS& given) {
  return given.cNamedArgs <= given.cArgs && (given.cArgs == 0 || given.rgvarg != nullptr) &&
         (given.cNamedArgs == 0 || given.rgdispidNamedArgs != nullptr);
}

UINT RequiredCount(const FUNCDESC& function) {
  UINT required = 0;
  for (std::size_t i = 0; i < ArgumentCount(function); ++i) {
    const USHORT flags = function.lprgelemdescParam[i].paramdesc.wParamFlags;
    if ((flags & kMayBeLeftOut) == 0) ++required;
  }
  return required;
}

// The value by which a caller omits an argument that others follow.
bool IsLeftOut(const VARIANT& value) {
  return V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
}

bool IsTextReference(const VARIANT& value) {
  return V_VT(&value) == (VT_BYREF | VT_BSTR) && V_BSTRREF(&value) != nullptr;
}

void CopyArray(SAFEARRAY* source, VARIANT& copy) {
  const HRESULT copied = SafeArrayCopy(source, &V_ARRAY(&copy));
  if (copied == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(copied)) throw Fault(FaultNumber::TypeMismatch);
  V_VT(&copy) = kByteArray;
}

}  // namespace

// The member's declaration of one argument.
struct DispatchArguments::Parameter {
  Parameter(const FUNCDESC& function, std::size_t index)
      : position(index), description(function.lprgelemdescParam[index].paramdesc) {
    const TYPEDESC* declared = &function.lprgelemdescParam[index].tdesc;
    byReference = declared->vt == VT_PTR;
    type = byReference ? declared->lptdesc->vt : declared->vt;
  }

  std::size_t position;
  const PARAMDESC& description;
  bool byReference = false;
  VARTYPE type = VT_EMPTY;  // without the reference
};

DispatchArguments::DispatchArguments(const FUNCDESC& function, LCID locale)
    : function_(function),
      locale_(locale),
      given_(ArgumentCount(function)),
      arguments_(given_.size()),
      converted_(given_.size()) {}

HRESULT DispatchArguments::Take(const DISPPARAMS& given, UINT& badArgument) {
  const HRESULT matched = Match(given, badArgument);
  if (FAILED(matched)) return matched;
  for (std::size_t i = 0; i < given_.size(); ++i) {
    if (given_[i] != nullptr) badArgument = static_cast<UINT>(given_[i] - given.rgvarg);
    const HRESULT passed = Pass(Parameter(function_, i));
    if (FAILED(passed)) return passed;
  }
  badArgument = 0;
  return S_OK;
}

// Arguments by position follow those by name, last to first.
HRESULT DispatchArguments::Match(const DISPPARAMS& given, UINT& badArgument) {
  if (!IsList(given)) return E_INVALIDARG;
  if (given.cArgs > given_.size() || given.cArgs < RequiredCount(function_)) {
    return DISP_E_BADPARAMCOUNT;
  }
  for (UINT i = given.cArgs; i-- > 0;) {
    const bool byName = i < given.cNamedArgs;
    const DISPID position =
        byName ? given.rgdispidNamedArgs[i] : static_cast<DISPID>(given.cArgs - 1 - i);
    badArgument = i;
    const HRESULT matched = MatchOne(position, &given.rgvarg[i]);
    if (FAILED(matched)) return matched;
  }
  return S_OK;
}

HRESULT DispatchArguments::MatchOne(DISPID position, VARIANT* argument) {
  if (position == DISPID_PROPERTYPUT && IsPropertyPut(function_)) {
    position = static_cast<DISPID>(given_.size()) - 1;
  }
  const auto index = static_cast<std::size_t>(position);
  if (position < 0 || index >= given_.size()) return DISP_E_PARAMNOTFOUND;
  if (given_[index] != nullptr) return DISP_E_PARAMNOTFOUND;
  given_[index] = argument;
  return S_OK;
}

HRESULT DispatchArguments::Pass(const Parameter& parameter) {
  VARIANT* const argument = given_[parameter.position];
  if (argument == nullptr) return PassDefault(parameter);
  VARIANT* const source = LookThrough(argument);
  if (source == nullptr) return DISP_E_TYPEMISMATCH;
  if (parameter.type == VT_VARIANT) {
    PassVariant(parameter, *source);
    return S_OK;
  }
  if (IsLeftOut(*source)) return PassDefault(parameter);
  if (parameter.type == VT_SAFEARRAY) {
    PassArray(parameter, *source);
    return S_OK;
  }
  return parameter.byReference ? PassReference(parameter, *source) : PassValue(parameter, *source);
}

HRESULT DispatchArguments::PassDefault(const Parameter& parameter) {
  const PARAMDESC& description = parameter.description;
  if ((description.wParamFlags & PARAMFLAG_FHASDEFAULT) == 0) return DISP_E_PARAMNOTOPTIONAL;
  VARIANT& value = description.pparamdescex->varDefaultValue;
  return parameter.byReference ? PassReference(parameter, value) : PassValue(parameter, value);
}

// The members read a variant as text. Numbers and dates are converted here, where the caller's
// locale is known.
void DispatchArguments::PassVariant(const Parameter& parameter, VARIANT& source) {
  OwnedVariant& text = converted_[parameter.position];
  VARIANT& seen = ConvertToText(text, source, locale_) ? text.Get() : source;
  arguments_[parameter.position] = ReferenceTo(seen, VT_VARIANT);
}

// Looks up only text by reference, which the system would convert through copies that stay unwiped.
HRESULT DispatchArguments::PassValue(const Parameter& parameter, VARIANT& source) {
  VARIANT& argument = arguments_[parameter.position];
  if (V_VT(&source) == parameter.type) {
    argument = source;
    return S_OK;
  }
  if (IsTextReference(source) && parameter.type == VT_BSTR) {
    V_VT(&argument) = VT_BSTR;
    V_BSTR(&argument) = *V_BSTRREF(&source);
    return S_OK;
  }
  VARIANT& copy = converted_[parameter.position].Get();
  const HRESULT converted = ConvertVariant(copy, source, locale_, parameter.type);
  argument = copy;
  return converted;
}

HRESULT DispatchArguments::PassReference(const Parameter& parameter, VARIANT& source) {
  const bool ownVariable = V_VT(&source) == (VT_BYREF | parameter.type);
  if (ownVariable && V_BYREF(&source) != nullptr) {
    arguments_[parameter.position] = source;
    return S_OK;
  }
  VARIANT& copy = converted_[parameter.position].Get();
  arguments_[parameter.position] = ReferenceTo(copy, parameter.type);
  return ConvertVariant(copy, source, locale_, parameter.type);
}

void DispatchArguments::PassArray(const Parameter& parameter, VARIANT& source) {
  const bool callersVariable = &source != given_[parameter.position];
  VARIANT& copy = converted_[parameter.position].Get();
  if (V_VT(&source) == (VT_BYREF | kByteArray) && V_ARRAYREF(&source) != nullptr) {
    arguments_[parameter.position] = source;
  } else if (V_VT(&source) == kByteArray && callersVariable) {
    arguments_[parameter.position] = ReferenceTo(source, kByteArray);
  } else if (V_VT(&source) == kByteArray || V_VT(&source) == VT_EMPTY) {
    CopyArray(V_VT(&source) == VT_EMPTY ? nullptr : V_ARRAY(&source), copy);
    arguments_[parameter.position] = ReferenceTo(copy, kByteArray);
  } else {
    throw Fault(FaultNumber::TypeMismatch);
  }
}

}  // namespace latchkey::com
