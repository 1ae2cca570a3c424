#include "platform/fork_hold.h"

namespace latchkey::platform {

void HoldDuringFork(void (*)(), void (*)()) {}

}  // namespace latchkey::platform
