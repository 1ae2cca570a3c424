// clsTimer for COM clients.
#pragma once

#include "com/windows/automation_object.h"
#include "com/windows/latchkey.h"
#include "latchkey/cls_timer.h"

namespace latchkey::com {

class TimerObject final : public AutomationObject<_clsTimer> {
 public:
  TimerObject() : AutomationObject(kTimerClass) {}

  STDMETHODIMP Start() noexcept override {
    return Run([&] { timer_.Start(); });
  }
  STDMETHODIMP GetElapsedTime(LONG* result) noexcept override {
    return Run(result, [&] { return timer_.GetElapsedTime(); });
  }

 private:
  latchkey::clsTimer timer_;
};

}  // namespace latchkey::com
