// The arguments of one late-bound call, brought into the form that the member's vtable slot takes:
// complete, by position, each of exactly the type that the member declares.
#pragma once

#include <span>
#include <vector>

#include "com/windows/automation_prelude.h"
#include "com/windows/variant_access.h"

namespace latchkey::com {

// Callers pass their arguments in many shapes: variables by reference inside a variant (scripts),
// numbers for texts, arrays by value, some left out, some by name. By the declared type:
//
// - A byte array passed by reference stays the caller's own array, so that erasing it reaches the
//   caller; an Empty variable counts as an unallocated array. An array passed by value is copied.
//   Anything but an array of bytes raises TypeMismatch.
// - A variant is the caller's own where it holds text or Null, else its text form.
// - Anything else is converted, as VariantChangeTypeEx does it; a reference goes to the caller's
//   own variable where that has the very type, else to a copy.
// - An argument left out gets its default.
//
// Texts are made and read in the caller's locale.
class DispatchArguments {
 public:
  // `function` describes the vtable slot and must live as long as this.
  DispatchArguments(const FUNCDESC& function, LCID locale);

  // Takes over what the caller gives, which must outlive the call. On failure `badArgument` is
  // the index in `given` of the argument at fault, and the result is DISP_E_BADPARAMCOUNT for a
  // wrong number, DISP_E_PARAMNOTFOUND for a name that the member does not have or an argument
  // given twice, DISP_E_PARAMNOTOPTIONAL, DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW, E_INVALIDARG for
  // a list that is none. Raises TypeMismatch (see above), bad_alloc and what ConvertToText raises.
  [[nodiscard]] HRESULT Take(const DISPPARAMS& given, UINT& badArgument);

  // The complete list, first to last, without the result. Valid for as long as this lives, after
  // Take has succeeded.
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
  std::vector<VARIANT*> given_;          // null for one that was left out
  std::vector<VARIANT> arguments_;       // own nothing
  std::vector<OwnedVariant> converted_;  // what the arguments hold or refer to
};

}  // namespace latchkey::com
