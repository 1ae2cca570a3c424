#include <gtest/gtest.h>
#include <sys/time.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <vector>

#include "platform/system_random.h"

namespace latchkey::test {
namespace {

std::atomic<int> signals{0};

// Sends a signal every tenth of a millisecond during its life.
class SignalStorm {
 public:
  SignalStorm() {
    struct sigaction action {};
    action.sa_handler = [](int) { ++signals; };
    ::sigaction(SIGALRM, &action, &before_);
    SetPeriod(100);
  }
  SignalStorm(const SignalStorm&) = delete;
  SignalStorm& operator=(const SignalStorm&) = delete;
  ~SignalStorm() {
    SetPeriod(0);
    ::sigaction(SIGALRM, &before_, nullptr);
  }

 private:
  static void SetPeriod(suseconds_t microseconds) {
    const itimerval timer{{0, microseconds}, {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction before_ {};
};

// A signal makes the system return fewer bytes.
TEST(SystemRandomTest, SignalsDoNotShortenAFill) {
  constexpr std::ptrdiff_t kPart = 64;
  std::vector<std::uint8_t> bytes(std::size_t{1} << 25);
  {
    const SignalStorm storm;
    ASSERT_TRUE(platform::FillRandom(bytes));
  }
  EXPECT_GT(signals, 1);
  for (auto part = bytes.begin(); part != bytes.end(); part += kPart) {
    ASSERT_LT(std::count(part, part + kPart, 0), kPart) << part - bytes.begin();
  }
}

}  // namespace
}  // namespace latchkey::test
