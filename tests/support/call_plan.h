// A plan of the calls of a fake that fail, and how.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace latchkey::test {

// Counts the calls of each name and runs the action that a test planned for one of them. Destroying
// a plan whose call was never made fails the test, since such a test would show nothing.
class CallPlan {
 public:
  // As the number of a call: every call.
  static constexpr int kEveryCall = 0;

  // Runs instead of the call. To make the call throw, it throws.
  using Action = std::function<void()>;

  CallPlan() = default;
  CallPlan(const CallPlan&) = delete;
  CallPlan& operator=(const CallPlan&) = delete;
  ~CallPlan();

  // Plans the nth call from now on (the first is 1) of that name.
  void At(std::string_view call, int nth, Action action);

  // Counts a call and runs the action planned for it. Returns whether there was one.
  bool Take(std::string_view call);

  // Removes all planned actions.
  void Forget() { steps_.clear(); }

 private:
  struct Step {
    std::string call;
    int nth;
    Action action;
    bool happened = false;
  };

  std::vector<Step> steps_;
  std::map<std::string, int, std::less<>> counts_;
};

}  // namespace latchkey::test
