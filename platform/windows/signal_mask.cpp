#include "platform/signal_mask.h"

namespace latchkey::platform {

void StartWithoutSignals(const std::function<void()>& start) { start(); }

}  // namespace latchkey::platform
