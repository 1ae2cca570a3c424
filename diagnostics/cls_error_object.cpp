#include "diagnostics/cls_error_object.h"

#include "diagnostics/record_clearing.h"

namespace latchkey {

clsErrorObject::clsErrorObject() {
  appErrorDescription_.reserve(kReservedText);
  rtErrorDescription_.reserve(kReservedText);
}

void clsErrorObject::Clear() noexcept { ClearStepByStep(*this); }

}  // namespace latchkey
