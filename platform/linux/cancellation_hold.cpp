#include "platform/cancellation_hold.h"

#include <pthread.h>

namespace latchkey::platform {

// Neither call can fail with the states of pthread.h.
CancellationHold::CancellationHold() noexcept {
  ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &stateBefore_);
}

CancellationHold::~CancellationHold() { ::pthread_setcancelstate(stateBefore_, nullptr); }

}  // namespace latchkey::platform
