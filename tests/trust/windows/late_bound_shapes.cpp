// Arguments of random shapes for every member of every class, bound late: each call ends with the
// HRESULT that its shapes ask for, and nothing leaks.
//   late_bound_shapes              10,000 calls; 100,000 with LATCHKEY_LONG
//   late_bound_shapes COUNT SEED   that many of that seed
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "tests/trust/program_start.h"
#include "tests/trust/resource_usage.h"
#include "tests/trust/windows/automation_memory.h"
#include "tests/trust/windows/late_bound_call.h"

namespace latchkey::test {
namespace {

// An exception ends with its fault's number.
Ending EndingOf(const Outcome& outcome) {
  return {outcome.result == DISP_E_EXCEPTION ? outcome.scode : outcome.result, outcome.type};
}

struct Target {
  LateClient client;
  std::vector<Member> members;
};

class ShapeThrower {
 public:
  // Half of the calls go to the first target.
  ShapeThrower(std::array<Target, 3> targets, std::uint64_t seed)
      : targets_(std::move(targets)), random_(seed, 0) {}

  // Calls members; the calls that ended other than expected, or that left something locked.
  int Throw(int calls) {
    int wrong = 0;
    for (int i = 0; i < calls; ++i) wrong += ThrowOne(i) ? 0 : 1;
    return wrong;
  }

  [[nodiscard]] bool ObjectIsFree() const { return object_.References() == 1; }

  // How many calls succeeded.
  [[nodiscard]] int Succeeded() const { return succeeded_; }

 private:
  bool ThrowOne(int number) {
    ShapeMaker shapes(random_, object_);
    const auto& [client, members] = targets_.at(static_cast<std::size_t>(
        random_.Flag() ? std::uint64_t{0} : 1 + random_.Below(targets_.size() - 1)));
    CallMaker maker(random_, members);
    LateCall call = maker.Make(shapes);
    while (AsksForTooMuch(members, call)) call = maker.Make(shapes);
    const Ending expected = ExpectedEnding(members, call);
    const Ending ending = EndingOf(Send(client, call));
    succeeded_ += SUCCEEDED(ending.result) ? 1 : 0;
    if (ending == expected && shapes.LocksAreAsMade()) return true;
    Print(number, call, ending, expected);
    return false;
  }

  static Outcome Send(const LateClient& client, LateCall& call) {
    std::vector<VARIANT> values;
    for (const Shape& shape : call.arguments) values.push_back(shape.value);
    DISPPARAMS given = {call.withoutValues ? nullptr : values.data(),
                        call.withoutNames ? nullptr : call.names.data(),
                        static_cast<UINT>(values.size()), static_cast<UINT>(call.names.size())};
    return client.Invoke(call.member, call.flags, call.withoutList ? nullptr : &given);
  }

  static void Print(int number, const LateCall& call, const Ending& ending,
                    const Ending& expected) {
    std::printf("call %d, member %ld, flags %u: %08lX and type %04X instead of %08lX and %04X",
                number, static_cast<long>(call.member), call.flags,
                static_cast<unsigned long>(ending.result), ending.type,
                static_cast<unsigned long>(expected.result), expected.type);
    for (const Shape& shape : call.arguments) {
      std::printf(" %04X=%04X", V_VT(&shape.value), V_VT(&shape.plain));
    }
    for (const DISPID name : call.names) std::printf(" name %ld", static_cast<long>(name));
    std::printf("\n");
  }

  std::array<Target, 3> targets_;
  RandomSource random_;
  CountedObject object_;
  int succeeded_ = 0;
};

int Run(int calls, std::uint64_t seed) {
  const Apartment apartment;
  const auto main = CreateMain();
  const auto api = CreateCryptoApi();
  const auto timer = CreateTimer();
  const std::array clients{LateClient(api.Get()), LateClient(main.Get()), LateClient(timer.Get())};
  ShapeThrower thrower({{{clients[0], MembersOfCryptoApi(clients[0])},
                         {clients[1], MembersOfMain(clients[1])},
                         {clients[2], MembersOfTimer(clients[2])}}},
                       seed);
  int wrong = thrower.Throw(calls / 10);
  const auto measure = [] {
    SetErrorInfo(0, nullptr);
    return std::pair(LiveAutomationBlocks(), CurrentUsage());
  };
  FailAutomationAllocation(0);  // from now on blocks are counted
  const auto [blocksBefore, before] = measure();
  wrong += thrower.Throw(calls - calls / 10);
  const auto [blocksAfter, after] = measure();
  std::printf(
      "seed %lu, %d calls, %d of them successful: %d with another ending, %ld blocks and %ld KiB "
      "more\n",
      static_cast<unsigned long>(seed), calls, thrower.Succeeded(), wrong,
      blocksAfter - blocksBefore,
      static_cast<long>(after.residentBytes / 1024) -
          static_cast<long>(before.residentBytes / 1024));
  const bool flat = blocksAfter <= blocksBefore + 8 &&
                    after.systemHandles <= before.systemHandles &&
                    after.residentBytes <= before.residentBytes + (1U << 20);
  return wrong == 0 && flat && thrower.ObjectIsFree() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  latchkey::test::SayThatItBegins("late_bound_shapes");
  const char* const usual = std::getenv("LATCHKEY_LONG") != nullptr ? "100000" : "10000";
  const int calls = std::atoi(count > 1 ? arguments[1] : usual);
  return latchkey::test::Run(calls, std::strtoull(count > 2 ? arguments[2] : "4", nullptr, 10));
}
