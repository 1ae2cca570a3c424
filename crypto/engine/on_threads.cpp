#include "crypto/engine/on_threads.h"

#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "base/stack_wipe.h"
#include "platform/signal_mask.h"

namespace latchkey {
namespace {

// Starts up to `count` threads. If the system refuses some, the others do the work. Here and below,
// the stack is wiped after an exception, because raising it leaves data there.
void StartThreads(std::vector<std::jthread>& threads, std::size_t count,
                  const std::function<void()>& body) {
  try {
    platform::StartWithoutSignals([&] {
      while (threads.size() < count) threads.emplace_back(body);
    });
    return;
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): see above
  }
  WipeStackFarBelow();
}

}  // namespace

void RunOnThreads(std::size_t count, const std::function<void()>& work) {
  if (count <= 1) return work();
  std::mutex failing;
  std::exception_ptr failure;
  const auto guarded = [&]() noexcept {
    try {
      return work();
    } catch (...) {
      const std::lock_guard lock(failing);
      if (!failure) failure = std::current_exception();
    }
    WipeStackFarBelow();
  };
  {
    std::vector<std::jthread> others;
    StartThreads(others, count - 1, guarded);
    guarded();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace latchkey
