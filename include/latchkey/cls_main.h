// The component's public entry object.
#pragma once

#include <cstdint>

#include "latchkey/export.h"
#include "latchkey/types.h"

namespace latchkey {

// Construct one on each thread that uses the component: it makes the thread's error record, which
// every operation needs. Another clsMain on the same thread replaces the record with a new one;
// destroying any clsMain of the thread empties the slot, and from then on every operation that
// touches the record raises ObjectNotSet (91).
//
// The properties read the calling thread's record. They have no error trap: without a record they
// raise ObjectNotSet. An instance is used by one thread.
//
// COM clients in a multithreaded apartment (.NET and PowerShell without STA, services) reach all
// their objects on one thread that the system makes, and so share one record. There, create one
// clsMain for the process, keep it alive and release it last: releasing any clsMain takes the
// record from every client of the apartment (91, "no clsMain exists on this thread"). An operation
// and the reading of its failure belong under one lock. Never keep a clsMain in the Session of ASP,
// whose pages run on changing threads.
class LATCHKEY_API clsMain {
 public:
  clsMain();
  clsMain(const clsMain&) = delete;
  clsMain& operator=(const clsMain&) = delete;
  ~clsMain();

  // Where the last failure was reported: 401 to 451 an operation's trap, 700 to 761 a check.
  [[nodiscard]] std::int16_t ErrorLocationID() const;
  // 1 run-time failure, 2 application failure. Raises Overflow (6) outside 16 bits.
  [[nodiscard]] std::int16_t ErrorType() const;
  // Number and description of the last run-time fault that an operation caught; 0 and empty before
  // the first. The numbers are those of Automation (latchkey/fault.h).
  [[nodiscard]] std::int32_t RTErrorNumber() const;
  [[nodiscard]] Text RTErrorDescription() const;
  // Number, 101 to 160, and message of the last failure that an operation found itself; 0 and
  // empty before the first (docs/errors.md).
  [[nodiscard]] std::int32_t AppErrorNumber() const;
  [[nodiscard]] Text AppErrorDescription() const;
  // Whether a failure was recorded since the record was last cleared. Test this first: clearing
  // leaves the location and the numbers in place.
  [[nodiscard]] bool ErrorExists() const;
  // The step of a multi-step operation in which the failure happened, 0 for none.
  [[nodiscard]] std::int16_t ErrorMachineState() const;

  // True when the machine has an Internet connection configured: on Windows what the system's
  // Internet library says, on Linux whether there is a default route. Makes no network traffic and
  // does not wait. False also when the query fails: location 419 or 420 for a run-time fault. Does
  // not clear the record, and works without one as long as nothing fails.
  [[nodiscard]] bool DoesInternetConnectionExist() const;
};

}  // namespace latchkey
