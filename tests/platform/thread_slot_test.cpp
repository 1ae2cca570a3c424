#include "platform/thread_slot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace latchkey::test {
namespace {

std::atomic<int> made{0};
std::atomic<int> destroyed{0};

void* Make() { return std::make_unique<int>(++made).release(); }

void Destroy(void* value) noexcept {
  const std::unique_ptr<int> owner(static_cast<int*>(value));
  ++destroyed;
}

constexpr platform::ThreadSlotFunctions kFunctions{Make, Destroy};

// The process has one slot, which other tests use with other functions: it is released before and
// after, and only threads of the test use it in between.
class ThreadSlotTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ReleaseThreadSlot();
    made = 0;
    destroyed = 0;
  }
  void TearDown() override { platform::ReleaseThreadSlot(); }
};

int ValueHere() { return *static_cast<int*>(platform::ThreadSlotValue(kFunctions)); }

template <class Action>
void OnNewThread(Action action) {
  std::thread(action).join();
}

TEST_F(ThreadSlotTest, AThreadKeepsItsValue) {
  OnNewThread([] {
    void* const first = platform::ThreadSlotValue(kFunctions);
    EXPECT_EQ(platform::ThreadSlotValue(kFunctions), first);
  });
  EXPECT_EQ(made, 1);
}

TEST_F(ThreadSlotTest, EachThreadHasItsOwnValue) {
  OnNewThread([] {
    void* const mine = platform::ThreadSlotValue(kFunctions);
    OnNewThread([mine] { EXPECT_NE(platform::ThreadSlotValue(kFunctions), mine); });
    EXPECT_EQ(platform::ThreadSlotValue(kFunctions), mine);
  });
  EXPECT_EQ(made, 2);
}

TEST_F(ThreadSlotTest, TheValueIsDestroyedWithItsThreadAndNotBefore) {
  OnNewThread([] {
    ValueHere();
    OnNewThread(ValueHere);
    EXPECT_EQ(destroyed, 1);
  });
  EXPECT_EQ(destroyed, 2);
}

TEST_F(ThreadSlotTest, AThreadWithoutAValueDestroysNone) {
  OnNewThread([] {});
  EXPECT_EQ(made, 0);
  EXPECT_EQ(destroyed, 0);
}

TEST_F(ThreadSlotTest, AFailingMakeLeavesTheThreadWithoutAValueUntilTheNextCall) {
  static std::atomic<bool> fails;
  fails = true;
  static constexpr platform::ThreadSlotFunctions kFailing{[] {
                                                            if (fails.exchange(false))
                                                              throw std::bad_alloc();
                                                            return Make();
                                                          },
                                                          Destroy};
  OnNewThread([] {
    EXPECT_THROW(platform::ThreadSlotValue(kFailing), std::bad_alloc);
    EXPECT_EQ(*static_cast<int*>(platform::ThreadSlotValue(kFailing)), 1);
  });
  EXPECT_EQ(destroyed, 1);
}

TEST_F(ThreadSlotTest, TheNextUseMakesAReleasedSlotAgain) {
  OnNewThread(ValueHere);
  platform::ReleaseThreadSlot();
  platform::ReleaseThreadSlot();
  OnNewThread([] { EXPECT_EQ(ValueHere(), 2); });
  EXPECT_EQ(destroyed, 2);
}

TEST_F(ThreadSlotTest, ReleasingWhileAThreadHoldsAValueDestroysItOnce) {
  std::promise<void> ready;
  std::promise<void> finish;
  std::thread thread([&] {
    ValueHere();
    ready.set_value();
    finish.get_future().wait();
  });
  ready.get_future().wait();
  platform::ReleaseThreadSlot();
  finish.set_value();
  thread.join();
  EXPECT_EQ(destroyed, 1);
}

TEST_F(ThreadSlotTest, ThreadsThatStartTogetherShareOneSlot) {
  constexpr int kThreads = 8;
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([started] {
      started.wait();
      const int value = ValueHere();
      EXPECT_EQ(ValueHere(), value);
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(made, kThreads);
  EXPECT_EQ(destroyed, kThreads);
}

}  // namespace
}  // namespace latchkey::test
