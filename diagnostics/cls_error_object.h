// The error record, in which every operation of the component records its failures.
#pragma once

#include <cstdint>

#include "diagnostics/failure_table.h"
#include "latchkey/types.h"

namespace latchkey {

// One record per thread, made by clsMain; use ErrorRecord() (thread_state.h) to get it. Only stores
// values: every value can be read and written, none is validated or changed, and no member fails.
// Clear, and writing texts of up to kReservedText characters, allocate nothing, so that a failed
// allocation can be recorded too.
//
// Test ErrorExists first: Clear keeps the location and both error numbers of the last failure.
//
// Used only by the thread that made it.
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
  [[nodiscard]] std::int16_t ErrorLocationID() const;
  void ErrorLocationID(std::int16_t vData);

  // 1 for a run-time failure, 2 for an application failure and after Clear.
  [[nodiscard]] std::int32_t ErrorType() const;
  void ErrorType(std::int32_t vData);

  // The component's own message and number for an application failure.
  [[nodiscard]] Text AppErrorDescription() const;
  void AppErrorDescription(TextView vData);
  [[nodiscard]] std::int16_t AppErrorNumber() const;
  void AppErrorNumber(std::int16_t vData);

  // The number and description of the run-time fault that was caught.
  [[nodiscard]] std::int32_t RTErrorNumber() const;
  void RTErrorNumber(std::int32_t vData);
  [[nodiscard]] Text RTErrorDescription() const;
  void RTErrorDescription(TextView vData);

  // True once a failure has been recorded since the last Clear.
  [[nodiscard]] bool ErrorExists() const;
  void ErrorExists(bool vData);

  // The step of a multi-step operation in which the failure happened; 0 if none was running.
  [[nodiscard]] std::int16_t MachineState() const;
  void MachineState(std::int16_t vData);

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
