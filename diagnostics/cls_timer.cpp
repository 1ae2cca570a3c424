#include "latchkey/cls_timer.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/thread_state.h"

namespace latchkey {

clsTimer::clsTimer() { Start(); }

void clsTimer::Start() noexcept {
  try {
    startTick_ = Probe().SignedTickCount();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the timer reports nothing
  }
}

std::int32_t clsTimer::GetElapsedTime() noexcept {
  try {
    endTick_ = Probe().SignedTickCount();
    return CheckedSubtract(endTick_, startTick_);
  } catch (...) {
    return 0;
  }
}

}  // namespace latchkey
