// Signals stay with the threads of the process that uses the library.
#include "platform/signal_mask.h"

#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <thread>

namespace latchkey::test {
namespace {

bool IsBlocked(int signal) {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, signal) == 1;
}

TEST(SignalMaskTest, AStartedThreadTakesOnlyItsOwnFaults) {
  bool blocksSent = false;
  bool blocksFault = true;
  platform::StartWithoutSignals([&] {
    std::thread([&] {
      blocksSent = IsBlocked(SIGINT) && IsBlocked(SIGTERM) && IsBlocked(SIGALRM);
      blocksFault = IsBlocked(SIGSEGV) || IsBlocked(SIGABRT);
    }).join();
  });
  EXPECT_TRUE(blocksSent);
  EXPECT_FALSE(blocksFault);
}

TEST(SignalMaskTest, TheCallingThreadKeepsItsSignals) {
  platform::StartWithoutSignals([] {});
  EXPECT_FALSE(IsBlocked(SIGINT));
  EXPECT_THROW(platform::StartWithoutSignals([] { throw std::runtime_error("refused"); }),
               std::runtime_error);
  EXPECT_FALSE(IsBlocked(SIGINT));
}

}  // namespace
}  // namespace latchkey::test
