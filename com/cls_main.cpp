#include "latchkey/cls_main.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/connectivity_probe.h"
#include "diagnostics/thread_state.h"

namespace latchkey {

clsMain::clsMain() { MakeErrorRecord(); }

clsMain::~clsMain() { DropErrorRecord(); }

std::int16_t clsMain::ErrorLocationID() const { return ErrorRecord().ErrorLocationID(); }

std::int16_t clsMain::ErrorType() const {
  return NarrowTo<std::int16_t>(ErrorRecord().ErrorType());
}

std::int32_t clsMain::RTErrorNumber() const { return ErrorRecord().RTErrorNumber(); }

Text clsMain::RTErrorDescription() const { return ErrorRecord().RTErrorDescription(); }

std::int32_t clsMain::AppErrorNumber() const { return ErrorRecord().AppErrorNumber(); }

Text clsMain::AppErrorDescription() const { return ErrorRecord().AppErrorDescription(); }

bool clsMain::ErrorExists() const { return ErrorRecord().ErrorExists(); }

std::int16_t clsMain::ErrorMachineState() const { return ErrorRecord().MachineState(); }

bool clsMain::DoesInternetConnectionExist() const { return QueryConnectionExists(); }

}  // namespace latchkey
