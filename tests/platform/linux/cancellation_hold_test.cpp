#include "platform/cancellation_hold.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include "diagnostics/error_trap.h"

namespace latchkey::test {
namespace {

// Reads the state by setting it twice, the only way.
int CancellationState() {
  int state = 0;
  int ignored = 0;
  ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
  ::pthread_setcancelstate(state, &ignored);
  return state;
}

TEST(CancellationHoldTest, HoldsForItsScopeAndRestoresTheEarlierState) {
  EXPECT_EQ(CancellationState(), PTHREAD_CANCEL_ENABLE);
  {
    const platform::CancellationHold hold;
    EXPECT_EQ(CancellationState(), PTHREAD_CANCEL_DISABLE);
    { const platform::CancellationHold inner; }
    EXPECT_EQ(CancellationState(), PTHREAD_CANCEL_DISABLE);
  }
  EXPECT_EQ(CancellationState(), PTHREAD_CANCEL_ENABLE);
}

TEST(CancellationHoldTest, AnOperationHoldsCancellationOff) {
  int state = PTHREAD_CANCEL_ENABLE;
  RunTrapped(trap::kCreateRandom, [&] { state = CancellationState(); });
  EXPECT_EQ(state, PTHREAD_CANCEL_DISABLE);
  EXPECT_EQ(CancellationState(), PTHREAD_CANCEL_ENABLE);
}

}  // namespace
}  // namespace latchkey::test
