// Work that several threads share.
#pragma once

#include <cstddef>
#include <functional>

namespace latchkey {

// Calls `work` on `count` threads at once, the calling one among them, and returns when all calls
// did; on fewer if the system refuses to start some. The first exception is rethrown here.
void RunOnThreads(std::size_t count, const std::function<void()>& work);

}  // namespace latchkey
