// Hints to the system about large memory.
#pragma once

#include <cstddef>

namespace latchkey::platform {

// Hints to the system that all of this memory, allocated and not yet written, is about to be
// filled. The system may then use huge pages: taking 4 KiB at a time costs several times as much as
// filling them. The hint covers only whole pages inside the memory, so no more memory is used.
// Never fails.
void ExpectFilling(void* memory, std::size_t size) noexcept;

}  // namespace latchkey::platform
