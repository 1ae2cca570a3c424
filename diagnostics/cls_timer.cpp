#include "latchkey/cls_timer.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/thread_state.h"

namespace latchkey {
namespace {

std::int32_t SignedTick() {
  return static_cast<std::int32_t>(ThisThread().services.probe->GetTickCount());
}

}  // namespace

clsTimer::clsTimer() { Start(); }

void clsTimer::Start() noexcept {
  try {
    startTick_ = SignedTick();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the timer reports nothing
  }
}

std::int32_t clsTimer::GetElapsedTime() noexcept {
  try {
    endTick_ = SignedTick();
    return CheckedSubtract(endTick_, startTick_);
  } catch (...) {
    return 0;
  }
}

}  // namespace latchkey
