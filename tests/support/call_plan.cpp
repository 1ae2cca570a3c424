#include "tests/support/call_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace latchkey::test {

CallPlan::~CallPlan() {
  for (const Step& step : steps_) {
    EXPECT_TRUE(step.happened) << "planned, but never called: " << step.call << " " << step.nth;
  }
}

void CallPlan::At(std::string_view call, int nth, Action action) {
  const int absolute = nth == kEveryCall ? kEveryCall : counts_[std::string(call)] + nth;
  steps_.push_back({std::string(call), absolute, std::move(action)});
}

bool CallPlan::Take(std::string_view call) {
  const int count = ++counts_[std::string(call)];
  const auto step = std::find_if(steps_.begin(), steps_.end(), [&](const Step& candidate) {
    return candidate.call == call && (candidate.nth == count || candidate.nth == kEveryCall);
  });
  if (step == steps_.end()) return false;
  step->happened = true;
  step->action();
  return true;
}

}  // namespace latchkey::test
