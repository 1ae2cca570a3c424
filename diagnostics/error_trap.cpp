#include "diagnostics/error_trap.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/thread_state.h"

namespace latchkey {
namespace {

// Writes the fields that both kinds of failure begin with.
clsErrorObject& BeginRecord(std::int32_t errorType, std::int16_t location) {
  clsErrorObject& record = ErrorRecord();
  record.ErrorExists(true);
  record.MachineState(NarrowTo<std::int16_t>(ThisThread().currentStep));
  record.ErrorType(errorType);
  record.ErrorLocationID(location);
  return record;
}

}  // namespace

void ClearErrorRecord() { ErrorRecord().Clear(); }

void RecordApplicationFailure(const CheckSite& site) {
  clsErrorObject& record = BeginRecord(kApplicationFailure, site.location);
  record.AppErrorNumber(site.number);
  record.AppErrorDescription(site.text);
}

void RecordRunTimeFailure(const TrapSite& site, const Fault& fault) {
  clsErrorObject& record = BeginRecord(kRunTimeFailure, site.location);
  record.RTErrorNumber(fault.Number());
  record.RTErrorDescription(fault.Description());
}

}  // namespace latchkey
