#include "platform/run_time.h"

namespace latchkey::platform {

void ReleaseRunTime() noexcept {}

}  // namespace latchkey::platform
