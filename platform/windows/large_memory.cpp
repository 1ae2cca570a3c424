#include "platform/large_memory.h"

namespace latchkey::platform {

// Large pages require a privilege that ordinary users lack.
void ExpectFilling(void* /*memory*/, std::size_t /*size*/) noexcept {}

}  // namespace latchkey::platform
