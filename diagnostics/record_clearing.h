// The steps of clsErrorObject::Clear.
#pragma once

#include "diagnostics/failure_table.h"

namespace latchkey {

// Clears a record. A step that fails is skipped. A template, so that tests can watch the steps and
// make them fail.
template <class Record>
void ClearStepByStep(Record& record) noexcept {
  const auto attempt = [](auto&& step) {
    try {
      step();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the next step must still run
    }
  };
  attempt([&] { record.ErrorType(kApplicationFailure); });
  attempt([&] { record.RTErrorDescription({}); });
  attempt([&] { record.AppErrorDescription({}); });
  attempt([&] { record.ErrorExists(false); });
  attempt([&] { record.MachineState(0); });
}

}  // namespace latchkey
