// The boundary between the component's C++ and COM: results, faults and null pointers.
#pragma once

#include <utility>

#include "base/stack_wipe.h"
#include "com/windows/automation_prelude.h"
#include "com/windows/classes.h"

namespace latchkey::com {

// Converts the exception being handled to the HRESULT 0x800A0000 + number, and sets error
// information on the calling thread with the class as source and the fault's description; that of
// ObjectNotSet adds that no clsMain exists on the thread. Without memory for the information, only
// the HRESULT is returned. Call it only inside a catch clause.
[[nodiscard]] HRESULT ReportCurrentFault(const ClassDescription& source) noexcept;

// Returns E_POINTER, for a null pointer instead of a result or an argument. Clears the error
// information of an earlier failure.
[[nodiscard]] HRESULT RefuseNullPointer() noexcept;

// Runs the body of a method without a result. Catches every exception, and wipes the part of the
// stack where it left data.
template <class Body>
[[nodiscard]] HRESULT RunMethod(const ClassDescription& source, Body&& body) noexcept {
  HRESULT reported = S_OK;
  try {
    std::forward<Body>(body)();
    return S_OK;
  } catch (...) {
    reported = ReportCurrentFault(source);
  }
  WipeStackFarBelow();
  return reported;
}

// Runs the body of a method that returns its result through a pointer. Clears the result first, and
// sets it only if the body succeeds.
template <class Result, class Body>
[[nodiscard]] HRESULT RunMethod(const ClassDescription& source, Result* result,
                                Body&& body) noexcept {
  if (result == nullptr) return RefuseNullPointer();
  *result = Result{};
  return RunMethod(source, [&] { *result = std::forward<Body>(body)(); });
}

}  // namespace latchkey::com
