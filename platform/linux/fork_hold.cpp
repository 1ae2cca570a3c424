#include "platform/fork_hold.h"

#include <pthread.h>

#include <new>

namespace latchkey::platform {

// The C library drops the functions when the library is unloaded.
void HoldDuringFork(void (*hold)(), void (*release)()) {
  if (::pthread_atfork(hold, release, release) != 0) throw std::bad_alloc();
}

}  // namespace latchkey::platform
