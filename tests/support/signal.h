// A signal that one thread gives and others wait for.
#pragma once

#include <condition_variable>
#include <mutex>

namespace latchkey::test {

// Not an atomic that is waited on: where the system has no wait on an address, the C++ library of
// GCC 12 looks at the value before it takes the lock, and sleeps through a change in between.
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
