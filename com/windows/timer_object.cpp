#include "com/windows/timer_object.h"

namespace latchkey::com {

STDMETHODIMP TimerObject::Start() noexcept {
  return Run([&] { timer_.Start(); });
}

STDMETHODIMP TimerObject::GetElapsedTime(LONG* result) noexcept {
  return Run(result, [&] { return timer_.GetElapsedTime(); });
}

}  // namespace latchkey::com
