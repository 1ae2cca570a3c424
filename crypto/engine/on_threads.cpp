#include "crypto/engine/on_threads.h"

#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace latchkey {

void RunOnThreads(std::size_t count, const std::function<void()>& work) {
  std::mutex failing;
  std::exception_ptr failure;
  const auto guarded = [&]() noexcept {
    try {
      work();
    } catch (...) {
      const std::lock_guard lock(failing);
      if (!failure) failure = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> others;
    try {
      others.reserve(count);
      while (others.size() + 1 < count) others.emplace_back(guarded);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): fewer threads do the work
    }
    guarded();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace latchkey
