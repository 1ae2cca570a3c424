// Which calls of a fake go wrong, and how.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace latchkey::test {

// Counts the calls of each name and carries out what a test planned for one of them. A planned call
// that never came fails the test when the plan ends: such a test would show nothing.
class CallPlan {
 public:
  // As the number of a call: all of them.
  static constexpr int kEveryCall = 0;

  // What happens instead of the call's work. It may throw what the call is to throw.
  using Action = std::function<void()>;

  CallPlan() = default;
  CallPlan(const CallPlan&) = delete;
  CallPlan& operator=(const CallPlan&) = delete;
  ~CallPlan();

  // Plans the nth call from now on (the first is 1) of that name.
  void At(std::string_view call, int nth, Action action);

  // Counts a call and carries out what is planned for it. True when something was.
  bool Take(std::string_view call);

  // Drops everything planned, whether it came or not.
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
