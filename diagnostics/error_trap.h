// How operations report failures. Only these functions write the error record.
#pragma once

#include <utility>

#include "base/faults.h"
#include "base/stack_wipe.h"
#include "diagnostics/failure_table.h"
#include "platform/cancellation_hold.h"

namespace latchkey {

// Clears the record; operations do this first. Raises ObjectNotSet on a thread without a record.
void ClearErrorRecord();

// Writes an application failure: ErrorExists, MachineState, ErrorType 2, ErrorLocationID,
// AppErrorNumber and AppErrorDescription, in this order. The run-time fields keep their values.
// Raises ObjectNotSet on a thread without a record, and Overflow if the current step does not fit
// MachineState (ErrorExists is then already set).
void RecordApplicationFailure(const CheckSite& site);

// Writes a run-time failure: ErrorExists, MachineState, ErrorType 1, ErrorLocationID,
// RTErrorNumber and RTErrorDescription, in this order. The application fields keep their values.
// Raises the same faults as RecordApplicationFailure.
void RecordRunTimeFailure(const TrapSite& site, const Fault& fault);

// Runs the body of an operation under its error trap: records a fault at the trap's location and
// then returns. On a thread without a record, ObjectNotSet reaches the caller. Returns whether the
// body completed.
template <class Body>
bool RunTrapped(const TrapSite& site, Body&& body) {
  const platform::CancellationHold hold;
  try {
    std::forward<Body>(body)();
    return true;
  } catch (...) {
    RecordRunTimeFailure(site, CurrentFault());
  }
  WipeStackFarBelow();
  return false;
}

}  // namespace latchkey
