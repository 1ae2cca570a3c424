// The edge between the component's C++ and COM: results, faults and null pointers, in one place.
#pragma once

#include <utility>

#include "com/windows/automation_prelude.h"
#include "com/windows/classes.h"
#include "platform/stack_wipe.h"

namespace latchkey::com {

// Turns the exception being handled into what a COM client sees: the HRESULT 0x800A0000 + number,
// and error information on the calling thread that names the class as source and the fault's
// description; that of ObjectNotSet adds that no clsMain exists on the thread. When there is no
// memory for the information the HRESULT goes out alone. Call it inside a catch clause only.
[[nodiscard]] HRESULT ReportCurrentFault(const ClassDescription& source) noexcept;

// Gives E_POINTER, for a null pointer where a result or an argument belongs. What an earlier
// failure left as error information is no longer there to be read as this one's.
[[nodiscard]] HRESULT RefuseNullPointer() noexcept;

// Runs the body of a method without a result. No exception leaves it, nor what one left behind.
template <class Body>
[[nodiscard]] HRESULT RunMethod(const ClassDescription& source, Body&& body) noexcept {
  HRESULT reported = S_OK;
  try {
    std::forward<Body>(body)();
    return S_OK;
  } catch (...) {
    reported = ReportCurrentFault(source);
  }
  platform::WipeStackFarBelow();
  return reported;
}

// Runs the body of a method that returns its result through a pointer. The result is cleared
// before anything else and set only when the body succeeds.
template <class Result, class Body>
[[nodiscard]] HRESULT RunMethod(const ClassDescription& source, Result* result,
                                Body&& body) noexcept {
  if (result == nullptr) return RefuseNullPointer();
  *result = Result{};
  return RunMethod(source, [&] { *result = std::forward<Body>(body)(); });
}

}  // namespace latchkey::com
