// Arguments of random shapes for every member of every class, bound late: each call returns the
// HRESULT that its shapes require, and no memory leaks.
//   late_bound_shapes              10,000 calls of a fixed seed; with LATCHKEY_LONG 100,000, and
//   the
//                                  same number of a fresh seed
//   late_bound_shapes COUNT SEED   that many of that seed
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "tests/com/automation_memory.h"
#include "tests/system/trust/program_start.h"
#include "tests/system/trust/resource_usage.h"
#include "tests/system/trust/windows/late_bound_call.h"
#include "tests/system/trust/windows/member_descriptions.h"

namespace latchkey::test {
namespace {

// The low part of an exception's HRESULT is its fault's number.
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

  // Calls members. Returns the number of calls with an unexpected result or a remaining lock.
  int Throw(int calls) {
    int wrong = 0;
    for (int i = 0; i < calls; ++i) wrong += ThrowOne(i) ? 0 : 1;
    return wrong;
  }

  [[nodiscard]] bool ObjectIsFree() const { return object_.References() == 1; }

  // The number of successful calls.
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

// The resources that the calls of a run may have leaked.
struct Held {
  long blocks = LiveAutomationBlocks();
  ResourceUsage usage = CurrentUsage();
};

// The heap's slack is less than the leak of one member that lost a pointer in each of its calls.
bool IsFlat(const Held& before, const Held& now) {
  constexpr long kBlockSlack = 8;
  constexpr std::uint64_t kHeapSlack = 256;
  constexpr std::uint64_t kResidentSlack = 1U << 20;
  const auto more = [](std::uint64_t first, std::uint64_t last) {
    return static_cast<long>(static_cast<std::int64_t>(last - first));
  };
  std::printf("%ld blocks, %ld bytes of heap, %ld KiB and %ld handles more\n",
              now.blocks - before.blocks, more(before.usage.heapBytes, now.usage.heapBytes),
              more(before.usage.residentBytes, now.usage.residentBytes) / 1024,
              more(before.usage.systemHandles, now.usage.systemHandles));
  return now.blocks <= before.blocks + kBlockSlack &&
         now.usage.heapBytes <= before.usage.heapBytes + kHeapSlack &&
         now.usage.residentBytes <= before.usage.residentBytes + kResidentSlack &&
         now.usage.systemHandles <= before.usage.systemHandles;
}

bool Run(int calls, std::uint64_t seed) {
  const auto main = CreateMain();
  const auto api = CreateCryptoApi();
  const auto timer = CreateTimer();
  const std::array clients{LateClient(api.Get()), LateClient(main.Get()), LateClient(timer.Get())};
  const std::array members{MembersOfCryptoApi(clients[0]), MembersOfMain(clients[1]),
                           MembersOfTimer(clients[2])};
  const std::array<IDispatch*, 3> objects{api.Get(), main.Get(), timer.Get()};
  for (std::size_t i = 0; i < objects.size(); ++i) {
    if (!AreAsDescribed(members[i], objects[i])) return false;
  }
  ShapeThrower thrower(
      {{{clients[0], members[0]}, {clients[1], members[1]}, {clients[2], members[2]}}}, seed);
  int wrong = thrower.Throw(calls / 10);
  SetErrorInfo(0, nullptr);
  const Held before;
  wrong += thrower.Throw(calls - calls / 10);
  SetErrorInfo(0, nullptr);
  const Held now;
  std::printf("seed %lu, %d calls, %d of them successful: %d with another ending\n",
              static_cast<unsigned long>(seed), calls, thrower.Succeeded(), wrong);
  return IsFlat(before, now) && wrong == 0 && thrower.ObjectIsFree();
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  constexpr std::uint64_t kSeed = 4;
  latchkey::test::SayThatItBegins("late_bound_shapes");
  const bool isLong = std::getenv("LATCHKEY_LONG") != nullptr;
  const int usual = isLong ? 100'000 : 10'000;
  const int calls = count > 1 ? std::atoi(arguments[1]) : usual;
  const std::uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : kSeed;
  const latchkey::test::Apartment apartment;
  latchkey::test::FailAutomationAllocation(0);  // starts the count of blocks
  bool done = latchkey::test::Run(calls, seed);
  if (isLong && count == 1) {
    done = latchkey::test::Run(calls, static_cast<std::uint64_t>(std::time(nullptr))) && done;
  }
  return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
