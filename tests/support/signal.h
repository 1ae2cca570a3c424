// A signal that one thread sends and others wait for.
#pragma once

#include <condition_variable>
#include <mutex>

namespace latchkey::test {

// Not std::atomic::wait: on systems without a wait on an address, the C++ library of GCC 12 reads
// the value before it takes the lock, and misses a change in between.
class Signal {
 public:
  void Give() {
    const std::lock_guard lock(mutex_);
    given_ = true;
    changed_.notify_all();
  }

  void Await() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return given_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool given_ = false;
};

}  // namespace latchkey::test
