// The allocations that something makes, failing one after another.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "crypto/crypto_state.h"
#include "tests/support/failing_memory.h"
#include "tests/support/fake_probe.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/module_scope.h"
#include "tests/support/still_probe.h"

namespace latchkey::test {

// The fixture of tests that let the first, second, ... allocation of something fail until it
// succeeds. The suite prints how many failed in all its tests.
class AllocationSweep : public testing::Test {
 protected:
  static constexpr int kMostAllocations = 1000;

  static void SetUpTestSuite() { failureSum = 0; }
  static void TearDownTestSuite() { std::printf("%d allocations failed in turn\n", failureSum); }

  AllocationSweep() {
    scope.Services().probe = &still_;
    ThisThreadCrypto().provider = &provider;
  }
  ~AllocationSweep() override { EXPECT_EQ(provider.OpenHandles(), 0); }

  // Calls run(nth), which lets the nth allocation fail, or none for 0, and tells whether it came to
  // that. Nothing that a run made is left behind. Gives how many runs failed.
  template <class Run>
  int Sweep(Run&& run) {
    EXPECT_FALSE(run(0));
    warnings_ = 0;
    for (int nth = 1; nth < kMostAllocations; ++nth) {
      SCOPED_TRACE("allocation " + std::to_string(nth));
      answering_.ForgetCalls();
      const long before = LiveBlocks();
      const int handles = provider.OpenHandles();
      const bool failed = run(nth);
      warnings_ += HasWarned() ? 1 : 0;
      answering_.ForgetCalls();
      EXPECT_EQ(provider.OpenHandles(), handles);
      EXPECT_EQ(provider.ClosedTwice(), 0);
      EXPECT_EQ(LiveBlocks(), before) << "blocks left behind";
      if (!failed) return Count(nth - 1);
    }
    ADD_FAILURE() << "there is no end of allocations";
    return kMostAllocations;
  }

  // Runs `body` with the nth allocation failing, or none for 0. Tells whether it came to that.
  template <class Body>
  static bool RunFailing(int nth, Body&& body) {
    FailAllocation(nth);
    std::forward<Body>(body)();
    const bool failed = nth > 0 && !AllocationFailurePending();
    FailAllocation(0);
    return failed;
  }

  // Adds to the sum of the suite.
  static int Count(int failures) {
    failureSum += failures;
    return failures;
  }

  // From now on the machine's answers take memory too.
  void AnswerWithMemory() { scope.Services().probe = &answering_; }

  // Whether that machine has shown a warning in this run, and in how many runs of the last sweep.
  [[nodiscard]] bool HasWarned() const { return !answering_.warnings.empty(); }
  [[nodiscard]] int Warnings() const { return warnings_; }

  ModuleScope scope;
  FaultyProvider provider;

 private:
  static inline int failureSum = 0;
  StillProbe still_;
  FakeProbe answering_;
  int warnings_ = 0;
};

}  // namespace latchkey::test
