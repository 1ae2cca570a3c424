// Threads that are cancelled in the middle of an operation.
#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include "tests/support/test_seed.h"
#include "tests/system/host/operations.h"

namespace latchkey::test {
namespace {

// The caches of the C library's allocator are off (CMakeLists.txt).
std::size_t HeapInUse() { return ::mallinfo2().uordblks; }

long OpenDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}

struct CancelledThread {
  const Operation& operation;
  std::atomic<bool> started{false};
  std::atomic<int> completed{0};
};

// Cancels itself first: the request is pending at each point of the operation.
void* RunUnderPendingCancellation(void* argument) {
  auto& thread = *static_cast<CancelledThread*>(argument);
  ::pthread_cancel(::pthread_self());
  thread.operation.run();
  ++thread.completed;
  ::pthread_testcancel();
  return nullptr;
}

void* RunUntilCancelled(void* argument) {
  auto& thread = *static_cast<CancelledThread*>(argument);
  thread.started = true;
  for (;;) {
    ::pthread_testcancel();
    thread.operation.run();
    ++thread.completed;
  }
}

pthread_t Start(void* (*body)(void*), CancelledThread& thread) {
  pthread_t id{};
  if (::pthread_create(&id, nullptr, body, &thread) != 0) throw std::runtime_error("no thread");
  return id;
}

// The thread's result.
void* Join(pthread_t thread) {
  void* result = nullptr;
  if (::pthread_join(thread, &result) != 0) throw std::runtime_error("no thread");
  return result;
}

TEST(CancellationTest, ARequestTakesEffectAfterTheOperation) {
  for (const Operation& operation : AllOperations()) {
    SCOPED_TRACE(operation.name);
    CancelledThread thread{operation};
    EXPECT_EQ(Join(Start(RunUnderPendingCancellation, thread)), PTHREAD_CANCELED);
    EXPECT_EQ(thread.completed, 1);
  }
}

TEST(CancellationTest, NothingIsLeftOfAThreadCancelledAtAnyMoment) {
  auto random = Seeded<std::mt19937>(TestSeed(std::random_device{}()));
  std::size_t heap = 0;
  long descriptors = 0;
  for (int round = 0; round < 50; ++round) {
    for (const Operation& operation : OperationsThatAskTheSystem()) {
      SCOPED_TRACE(operation.name);
      CancelledThread thread{operation};
      const pthread_t id = Start(RunUntilCancelled, thread);
      while (!thread.started) continue;
      for (auto turns = random() % 100'000; turns > 0; --turns)
        static_cast<void>(thread.started.load());
      ASSERT_EQ(::pthread_cancel(id), 0);
      ASSERT_EQ(Join(id), PTHREAD_CANCELED);
    }
    // The first round allocates memory that the process keeps.
    if (round == 0) {
      heap = HeapInUse();
      descriptors = OpenDescriptors();
    }
  }
  EXPECT_EQ(HeapInUse(), heap);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

}  // namespace
}  // namespace latchkey::test
