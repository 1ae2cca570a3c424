// What the system can do for memory that much is written to.
#pragma once

#include <cstddef>

namespace latchkey::platform {

// Tells the system that all of this memory, allocated and not written yet, is about to be filled.
// Where it is large, new pages may then come in large pieces: taking 4 KiB at a time from the
// system costs several times as much as filling them. Only whole pages inside the memory are meant,
// so no more memory is used. Never fails: it is a wish.
void ExpectFilling(void* memory, std::size_t size) noexcept;

}  // namespace latchkey::platform
