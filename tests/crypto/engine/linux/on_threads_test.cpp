// A signal handler of the process never runs on a thread of the library.
#include "crypto/engine/on_threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <thread>

namespace latchkey::test {
namespace {

TEST(OnThreadsSignalTest, OnlyTheCallingThreadTakesSignals) {
  const auto caller = std::this_thread::get_id();
  std::atomic<int> taking = 0;
  std::atomic<bool> callerTakes = false;
  RunOnThreads(3, [&] {
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    if (sigismember(&mask, SIGTERM) == 1) return;
    ++taking;
    if (std::this_thread::get_id() == caller) callerTakes = true;
  });
  EXPECT_EQ(taking, 1);
  EXPECT_TRUE(callerTakes);
}

}  // namespace
}  // namespace latchkey::test
