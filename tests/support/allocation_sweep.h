// The allocations that something makes, failing one after another.
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

// The fixture of tests that let the first, second, ... allocation of something fail until it
// succeeds. The suite prints how many failed in all its tests.
class AllocationSweep : public testing::Test {
 protected:
  static void SetUpTestSuite() { failureSum = 0; }
  static void TearDownTestSuite() { std::printf("%d allocations failed in turn\n", failureSum); }

  // The machine's answers take no memory.
  AllocationSweep() {
    still_.HoldStill();
    scope.Services().probe = &still_;
    ThisThreadCrypto().provider = &provider;
  }
  ~AllocationSweep() override {
    EXPECT_EQ(provider.OpenHandles(), 0);
    EXPECT_TRUE(still_.warnings.empty());
  }

  // Calls run(nth), which lets the nth allocation fail, or none for 0, and returns whether it came
  // to that: first for 0, then in turn. Nothing that a run made is left behind. Returns how many
  // runs failed.
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
      EXPECT_EQ(LiveBlocks(), before) << "blocks left behind";
      return failed;
    });
    failureSum += failures;
    return failures;
  }

  // Sweeps a run that makes a seed, on a machine whose answers take memory too. What cannot be read
  // for a seed is left out or replaced, for a drive with a warning, and a seed without digits is no
  // number: each run succeeds (0), or ends in one of the ways of `endings`, and each of these is
  // seen. run(nth) returns whether an allocation failed, and how the run ended.
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
