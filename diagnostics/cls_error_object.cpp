#include "diagnostics/cls_error_object.h"

#include "diagnostics/record_clearing.h"

namespace latchkey {

clsErrorObject::clsErrorObject() {
  appErrorDescription_.reserve(kReservedText);
  rtErrorDescription_.reserve(kReservedText);
}

void clsErrorObject::Clear() noexcept { ClearStepByStep(*this); }

std::int16_t clsErrorObject::ErrorLocationID() const { return errorLocationID_; }
void clsErrorObject::ErrorLocationID(std::int16_t vData) { errorLocationID_ = vData; }

std::int32_t clsErrorObject::ErrorType() const { return errorType_; }
void clsErrorObject::ErrorType(std::int32_t vData) { errorType_ = vData; }

Text clsErrorObject::AppErrorDescription() const { return appErrorDescription_; }
void clsErrorObject::AppErrorDescription(TextView vData) { appErrorDescription_ = vData; }

std::int16_t clsErrorObject::AppErrorNumber() const { return appErrorNumber_; }
void clsErrorObject::AppErrorNumber(std::int16_t vData) { appErrorNumber_ = vData; }

std::int32_t clsErrorObject::RTErrorNumber() const { return rtErrorNumber_; }
void clsErrorObject::RTErrorNumber(std::int32_t vData) { rtErrorNumber_ = vData; }

Text clsErrorObject::RTErrorDescription() const { return rtErrorDescription_; }
void clsErrorObject::RTErrorDescription(TextView vData) { rtErrorDescription_ = vData; }

bool clsErrorObject::ErrorExists() const { return errorExists_; }
void clsErrorObject::ErrorExists(bool vData) { errorExists_ = vData; }

std::int16_t clsErrorObject::MachineState() const { return machineState_; }
void clsErrorObject::MachineState(std::int16_t vData) { machineState_ = vData; }

}  // namespace latchkey
