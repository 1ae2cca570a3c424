// Makes the provider calls of an operation fail, one after another.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/watched_service.h"

namespace latchkey::test {

inline constexpr const char* kAcquire = "CryptAcquireContextA";

// The fixture of tests that make each call of a successful run fail, once refused and once by
// raising a fault.
class SweptService : public WatchedService {
 protected:
  // The tests search freed memory for the data, so the journal must not hold it.
  SweptService() { provider.LeaveDataOut(); }

  enum class Manner { Refused, Faulted };

  // The names of the calls in the journal, in order.
  [[nodiscard]] std::vector<std::string> CallsMade() const {
    std::vector<std::string> calls;
    for (const Call& call : journal.All()) {
      if (call.name.starts_with("Crypt")) calls.push_back(call.name);
    }
    EXPECT_FALSE(calls.empty());
    return calls;
  }

  // Calls visit(call, nth, manner) for the nth call of each name, in both manners. Returns the
  // number of visits.
  template <class Visit>
  static int ForEachFailure(const std::vector<std::string>& calls, Visit&& visit) {
    int failures = 0;
    std::map<std::string, int> counts;
    for (const std::string& call : calls) {
      const int nth = ++counts[call];
      for (const Manner manner : {Manner::Refused, Manner::Faulted}) {
        SCOPED_TRACE(call + (manner == Manner::Refused ? " refused" : " faulted"));
        visit(call, nth, manner);
        ++failures;
      }
    }
    return failures;
  }

  void PlanFailure(const std::string& call, int nth, Manner manner) {
    // After a refusal the base provider would be opened once more, with a new key set.
    const int which = call == kAcquire ? CallPlan::kEveryCall : nth;
    if (manner == Manner::Refused) {
      provider.FailAt(call, which);
    } else {
      provider.ThrowAt(call, which, Fault(FaultNumber::TypeMismatch));
    }
  }
};

}  // namespace latchkey::test
