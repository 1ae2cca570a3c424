// The error record, in which every operation of the component records its failure.
#pragma once

#include <cstdint>

#include "diagnostics/failure_table.h"
#include "latchkey/types.h"

namespace latchkey {

// One record per thread, made by clsMain and reached through thread_state.h. A plain data holder:
// every value can be read and written, none is validated or changed on the way, and no member
// fails. Writing does not allocate for texts of up to kReservedText characters, nor does Clear, so
// that a failure of memory can be recorded too.
//
// Test ErrorExists first: Clear leaves the location and both error numbers of the last failure in
// place.
//
// Used by the thread that made it only.
class clsErrorObject final {
 public:
  static constexpr std::size_t kReservedText = 128;

  clsErrorObject();
  clsErrorObject(const clsErrorObject&) = delete;
  clsErrorObject& operator=(const clsErrorObject&) = delete;
  ~clsErrorObject() = default;

  // Sets ErrorType to 2, both descriptions to empty, ErrorExists to false and MachineState to 0, in
  // this order. A step that fails is skipped. ErrorLocationID, AppErrorNumber and RTErrorNumber
  // keep their values.
  void Clear() noexcept;

  // The location that reported the failure; see failure_table.h.
  [[nodiscard]] std::int16_t ErrorLocationID() const { return errorLocationID_; }
  void ErrorLocationID(std::int16_t vData) { errorLocationID_ = vData; }

  // 1 for a run-time failure, 2 for an application failure and after Clear.
  [[nodiscard]] std::int32_t ErrorType() const { return errorType_; }
  void ErrorType(std::int32_t vData) { errorType_ = vData; }

  // The component's own message and number for an application failure.
  [[nodiscard]] Text AppErrorDescription() const { return appErrorDescription_; }
  void AppErrorDescription(TextView vData) { appErrorDescription_ = vData; }
  [[nodiscard]] std::int16_t AppErrorNumber() const { return appErrorNumber_; }
  void AppErrorNumber(std::int16_t vData) { appErrorNumber_ = vData; }

  // The number and description of the run-time fault that was caught.
  [[nodiscard]] std::int32_t RTErrorNumber() const { return rtErrorNumber_; }
  void RTErrorNumber(std::int32_t vData) { rtErrorNumber_ = vData; }
  [[nodiscard]] Text RTErrorDescription() const { return rtErrorDescription_; }
  void RTErrorDescription(TextView vData) { rtErrorDescription_ = vData; }

  // True once a failure has been recorded since the last Clear.
  [[nodiscard]] bool ErrorExists() const { return errorExists_; }
  void ErrorExists(bool vData) { errorExists_ = vData; }

  // The step of a multi-step operation in which the failure happened; 0 if none was running.
  [[nodiscard]] std::int16_t MachineState() const { return machineState_; }
  void MachineState(std::int16_t vData) { machineState_ = vData; }

 private:
  std::int16_t errorLocationID_ = 0;
  std::int32_t errorType_ = kApplicationFailure;
  std::int16_t appErrorNumber_ = 0;
  Text appErrorDescription_;
  std::int32_t rtErrorNumber_ = 0;
  Text rtErrorDescription_;
  bool errorExists_ = false;
  std::int16_t machineState_ = 0;
};

}  // namespace latchkey
