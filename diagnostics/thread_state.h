// The state of the component for each thread that uses it. Not shared between threads, so never
// locked.
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
  // The thread's error record. Made when a clsMain is constructed, and null without one.
  std::unique_ptr<clsErrorObject> errorRecord;

  // The current step of a multi-step operation, 0 for none. Every failure copies it into the
  // record's MachineState.
  std::int32_t currentStep = 0;

  // The platform services that this thread's operations use.
  platform::Services services;

  // The per-thread state of another folder, which defines it and makes it on first use.
  std::unique_ptr<ThreadPart> part;
};

// The calling thread's state, made on first use.
ThreadState& ThisThread();

// The machine and the code page as the calling thread sees them.
inline platform::SystemProbe& Probe() { return *ThisThread().services.probe; }
inline const CodePage& ThreadCodePage() { return *ThisThread().services.codePage; }

// The calling thread's error record. Without one (no clsMain lives on this thread) it raises
// FaultNumber::ObjectNotSet.
clsErrorObject& ErrorRecord();

// Gives the calling thread a new error record, which replaces an earlier one.
void MakeErrorRecord();

// Destroys the calling thread's error record.
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
