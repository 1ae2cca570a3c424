// The component's public entry object.
#pragma once

#include <cstdint>

#include "latchkey/export.h"
#include "latchkey/types.h"

namespace latchkey {

// Construct one on each thread that uses the component: it makes the thread's error record, which
// every operation needs. Another clsMain on the same thread replaces the record with a new one.
// Destroying any clsMain of the thread destroys the record, and from then on every operation that
// uses it raises ObjectNotSet (91).
//
// The properties read the calling thread's record. They have no error trap: without a record they
// raise ObjectNotSet. Use an instance on one thread only.
//
// COM clients in a multithreaded apartment (.NET and PowerShell without STA, services) use all
// their objects on one thread that the system makes, and so share one record. In such a process
// create one clsMain, keep it alive and release it last: releasing any clsMain destroys the record
// for every client of the apartment (91, "no clsMain exists on this thread"). Hold one lock over an
// operation and the reading of its failure. Never keep a clsMain in the Session of ASP, whose pages
// run on changing threads.
class LATCHKEY_API clsMain {
 public:
  clsMain();
  clsMain(const clsMain&) = delete;
  clsMain& operator=(const clsMain&) = delete;
  ~clsMain();

  // The location of the last failure: 401 to 451 an operation's trap, 700 to 761 a check.
  [[nodiscard]] std::int16_t ErrorLocationID() const;
  // 1 for a run-time failure, 2 for an application failure. Raises Overflow (6) if the value does
  // not fit 16 bits.
  [[nodiscard]] std::int16_t ErrorType() const;
  // Number and description of the last run-time fault that an operation caught; 0 and empty before
  // the first. The numbers are those of Automation (latchkey/fault.h).
  [[nodiscard]] std::int32_t RTErrorNumber() const;
  [[nodiscard]] Text RTErrorDescription() const;
  // Number (101 to 160) and message of the last failure that an operation found itself; 0 and empty
  // before the first. docs/errors.md lists them.
  [[nodiscard]] std::int32_t AppErrorNumber() const;
  [[nodiscard]] Text AppErrorDescription() const;
  // Whether a failure was recorded since the record was last cleared. Test this first: clearing
  // keeps the location and the numbers.
  [[nodiscard]] bool ErrorExists() const;
  // The step of a multi-step operation in which the failure happened, 0 for none.
  [[nodiscard]] std::int16_t ErrorMachineState() const;

  // True if an Internet connection is configured: on Windows as the system's Internet library
  // reports, on Linux if a default route exists. Makes no network traffic and does not wait. Also
  // false if the query fails: location 419 or 420 for a run-time fault. Does not clear the record,
  // and works without one as long as nothing fails.
  [[nodiscard]] bool DoesInternetConnectionExist() const;
};

}  // namespace latchkey
