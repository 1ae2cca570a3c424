// The arguments of one late-bound call, converted to the form of the member's vtable slot:
// complete, by position, each of exactly the declared type.
#pragma once

#include <span>
#include <vector>

#include "com/windows/automation_prelude.h"
#include "com/windows/variant_access.h"

namespace latchkey::com {

// Callers pass their arguments in many shapes: variables by reference inside a variant (scripts),
// numbers for texts, arrays by value, some left out, some by name. By the declared type:
//
// - A byte array passed by reference is the caller's own array, so that erasing it affects the
//   caller; an Empty variable counts as an unallocated array. An array passed by value is copied.
//   Other arrays raise TypeMismatch.
// - A variant is the caller's own if it holds text or Null, otherwise its text form.
// - Other types are converted as by VariantChangeTypeEx; a reference points to the caller's
//   variable if that has exactly the type, otherwise to a copy.
// - An omitted argument gets its default.
//
// Text is converted in the caller's locale.
class DispatchArguments {
 public:
  // `function` describes the vtable slot and must live as long as this.
  DispatchArguments(const FUNCDESC& function, LCID locale);

  // Converts the caller's arguments, which must outlive the call. On failure `badArgument` is the
  // index in `given` of the argument at fault, and the result is DISP_E_BADPARAMCOUNT for a wrong
  // number, DISP_E_PARAMNOTFOUND for an unknown name or an argument given twice,
  // DISP_E_PARAMNOTOPTIONAL, DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW, E_INVALIDARG for an invalid
  // list. Raises TypeMismatch (see above), bad_alloc and the exceptions of ConvertToText.
  [[nodiscard]] HRESULT Take(const DISPPARAMS& given, UINT& badArgument);

  // The complete list, first to last, without the result. Valid after Take has succeeded and while
  // this object lives.
  [[nodiscard]] std::span<VARIANT> Complete() noexcept { return arguments_; }

 private:
  struct Parameter;

  HRESULT Match(const DISPPARAMS& given, UINT& badArgument);
  HRESULT MatchOne(DISPID position, VARIANT* argument);
  HRESULT Pass(const Parameter& parameter);
  HRESULT PassDefault(const Parameter& parameter);
  HRESULT PassValue(const Parameter& parameter, VARIANT& source);
  HRESULT PassReference(const Parameter& parameter, VARIANT& source);
  void PassVariant(const Parameter& parameter, VARIANT& source);
  void PassArray(const Parameter& parameter, VARIANT& source);

  const FUNCDESC& function_;
  LCID locale_;
  std::vector<VARIANT*> given_;          // null for an omitted one
  std::vector<VARIANT> arguments_;       // own nothing
  std::vector<OwnedVariant> converted_;  // values that the arguments hold or refer to
};

}  // namespace latchkey::com
