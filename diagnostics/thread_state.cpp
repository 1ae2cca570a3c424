#include "diagnostics/thread_state.h"

#include "latchkey/fault.h"
#include "platform/thread_slot.h"

namespace latchkey {
namespace {

void* MakeThreadState() { return std::make_unique<ThreadState>().release(); }

void DestroyThreadState(void* data) noexcept {
  const std::unique_ptr<ThreadState> owner(static_cast<ThreadState*>(data));
}

}  // namespace

ThreadState& ThisThread() {
  static constexpr platform::ThreadSlotFunctions kFunctions{MakeThreadState, DestroyThreadState};
  return *static_cast<ThreadState*>(platform::ThreadSlotValue(kFunctions));
}

clsErrorObject& ErrorRecord() {
  clsErrorObject* record = ThisThread().errorRecord.get();
  if (record == nullptr) throw Fault(FaultNumber::ObjectNotSet);
  return *record;
}

void MakeErrorRecord() { ThisThread().errorRecord = std::make_unique<clsErrorObject>(); }

void DropErrorRecord() noexcept {
  try {
    ThisThread().errorRecord.reset();
  } catch (
      ...) {  // NOLINT(bugprone-empty-catch): a thread whose state cannot be made has no record
  }
}

}  // namespace latchkey
