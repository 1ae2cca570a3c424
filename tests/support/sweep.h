// Runs an operation with its first, second, ... allocation or call failing.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/support/failing_memory.h"

namespace latchkey::test {

inline constexpr int kMostFailures = 2000;

// Calls run(nth) for nth = 1, 2, ... until it returns false. It makes the nth allocation or call
// fail and returns whether that was made. Returns the number of failures.
template <class Run>
int FailEachInTurn(Run&& run) {
  for (int nth = 1; nth < kMostFailures; ++nth) {
    SCOPED_TRACE("failure of number " + std::to_string(nth));
    if (!run(nth)) return nth - 1;
  }
  ADD_FAILURE() << "still failing";
  return kMostFailures;
}

// Runs `body` with the nth allocation failing, or none for 0. Returns whether that allocation was
// made.
template <class Body>
bool RunFailing(int nth, Body&& body) {
  FailAllocation(nth);
  std::forward<Body>(body)();
  const bool failed = nth > 0 && !AllocationFailurePending();
  FailAllocation(0);
  return failed;
}

}  // namespace latchkey::test
