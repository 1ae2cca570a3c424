#include "platform/fork_hold.h"

namespace latchkey::platform {

void HoldDuringFork(void (* /*hold*/)(), void (* /*release*/)()) {}

}  // namespace latchkey::platform
