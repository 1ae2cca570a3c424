// What the component keeps for each thread that uses it. Nothing here is shared between threads
// and nothing is locked.
#pragma once

#include <cstdint>
#include <memory>

#include "diagnostics/cls_error_object.h"
#include "platform/services.h"

namespace latchkey {

class ThreadPart {
 public:
  ThreadPart() = default;
  ThreadPart(const ThreadPart&) = delete;
  ThreadPart& operator=(const ThreadPart&) = delete;
  virtual ~ThreadPart() = default;
};

struct ThreadState {
  // The thread's error record: made by clsMain when it is constructed, empty before and after.
  std::unique_ptr<clsErrorObject> errorRecord;

  // The step of the multi-step operation that is running, 0 for none. Every failure copies it into
  // the record's MachineState.
  std::int32_t currentStep = 0;

  // The platform that this thread's operations work against.
  platform::Services services;

  // What another folder keeps for the thread, which defines it and makes it on first use.
  std::unique_ptr<ThreadPart> part;
};

// The calling thread's data, made on first use.
ThreadState& ThisThread();

// The calling thread's error record. Without one (no clsMain lives on this thread) it raises
// FaultNumber::ObjectNotSet.
clsErrorObject& ErrorRecord();

// Gives the calling thread a new error record; an earlier one is gone.
void MakeErrorRecord();

// Takes the calling thread's error record away.
void DropErrorRecord() noexcept;

// A scope in which the thread has an error record.
class ErrorRecordScope {
 public:
  ErrorRecordScope() { MakeErrorRecord(); }
  ErrorRecordScope(const ErrorRecordScope&) = delete;
  ErrorRecordScope& operator=(const ErrorRecordScope&) = delete;
  ~ErrorRecordScope() { DropErrorRecord(); }
};

}  // namespace latchkey
