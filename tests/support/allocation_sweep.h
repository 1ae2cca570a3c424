// Makes the allocations of an operation fail, one after another.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <initializer_list>
#include <map>
#include <utility>

#include "crypto/crypto_state.h"
#include "tests/support/fake_probe.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/module_scope.h"
#include "tests/support/sweep.h"

namespace latchkey::test {

// The fixture of tests that make the first, second, ... allocation of an operation fail until it
// succeeds. The suite prints the number of failures in all its tests.
class AllocationSweep : public testing::Test {
 protected:
  static void SetUpTestSuite() { failureSum = 0; }
  static void TearDownTestSuite() { std::printf("%d allocations failed in turn\n", failureSum); }

  // Installs a machine whose answers allocate nothing.
  AllocationSweep() {
    still_.HoldStill();
    scope.Services().probe = &still_;
    ThisThreadCrypto().provider = &provider;
  }
  ~AllocationSweep() override {
    EXPECT_EQ(provider.OpenHandles(), 0);
    EXPECT_TRUE(still_.warnings.empty());
  }

  // Calls run(nth) for 0, 1, 2, ...: it must make the nth allocation fail, or none for 0, and
  // return whether that allocation was made. Checks that each run frees and closes all that it
  // made. Returns the number of runs with a failure.
  template <class Run>
  int Sweep(Run&& run) {
    EXPECT_FALSE(run(0));
    const int failures = FailEachInTurn([&](int nth) {
      answering_.ForgetCalls();
      const long before = LiveBlocks();
      const int handles = provider.OpenHandles();
      const bool failed = run(nth);
      answering_.ForgetCalls();
      EXPECT_EQ(provider.OpenHandles(), handles);
      EXPECT_EQ(provider.ClosedTwice(), 0);
      EXPECT_EQ(LiveBlocks(), before) << "blocks not freed";
      return failed;
    });
    failureSum += failures;
    return failures;
  }

  // Sweeps a run that makes a seed, on a machine whose answers allocate memory too. Readings that
  // fail are left out or replaced (a drive's with a warning), and a seed without digits is not a
  // number. So each run must succeed (0) or end in one of the ways in `endings`, and each of these
  // must occur. run(nth) returns whether an allocation failed, and how the run ended.
  template <class Run>
  int SweepSeed(std::initializer_list<int> endings, Run&& run) {
    scope.Services().probe = &answering_;
    std::map<int, int> counts{{0, 0}};
    for (const int ending : endings) counts[ending] = 0;
    int warnings = 0;
    const int failures = Sweep([&](int nth) {
      const auto [failed, ending] = run(nth);
      if (failed) ++counts.at(ending);
      if (!answering_.warnings.empty()) {
        ++warnings;
        EXPECT_EQ(ending, 0) << "after a warning";
      }
      return failed;
    });
    for (const auto& [ending, count] : counts) EXPECT_GT(count, 0) << ending;
    EXPECT_GT(warnings, 0);
    return failures;
  }

  ModuleScope scope;
  FaultyProvider provider;

 private:
  static inline int failureSum = 0;
  FakeProbe still_;
  FakeProbe answering_;
};

}  // namespace latchkey::test
