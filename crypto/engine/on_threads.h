// Work that several threads share.
#pragma once

#include <cstddef>
#include <functional>

namespace latchkey {

// Calls `work` on `count` threads at once, including the calling one, and returns when all calls
// have returned. Uses fewer threads if the system refuses to start some. Rethrows the first
// exception.
void RunOnThreads(std::size_t count, const std::function<void()>& work);

}  // namespace latchkey
