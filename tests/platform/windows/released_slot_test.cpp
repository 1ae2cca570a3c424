// A module that is about to be unloaded: ending threads must not call it.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "platform/thread_slot.h"

namespace latchkey::test {
namespace {

std::atomic<int> destroyed{0};
int value = 0;

void* Make() { return &value; }
void Destroy(void* /*value*/) noexcept { ++destroyed; }

TEST(ReleasedSlotTest, TheValueOfALivingThreadIsDestroyedAtOnce) {
  platform::ReleaseThreadSlot();  // other tests use the slot with other functions
  std::promise<void> ready;
  std::promise<void> finish;
  std::thread thread([&] {
    EXPECT_EQ(platform::ThreadSlotValue({Make, Destroy}), &value);
    ready.set_value();
    finish.get_future().wait();
  });
  ready.get_future().wait();
  platform::ReleaseThreadSlot();
  EXPECT_EQ(destroyed, 1);
  finish.set_value();
  thread.join();
  EXPECT_EQ(destroyed, 1);
}

}  // namespace
}  // namespace latchkey::test
