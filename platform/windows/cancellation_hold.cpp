#include "platform/cancellation_hold.h"

namespace latchkey::platform {

CancellationHold::CancellationHold() noexcept = default;

CancellationHold::~CancellationHold() = default;

}  // namespace latchkey::platform
