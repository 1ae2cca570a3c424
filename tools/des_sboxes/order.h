// Orders the gates of a circuit for a compiler that keeps their order: few values live at once, so
// that they fit the registers, and gates near each other that do not wait for one another. Random
// list scheduling, of which the best attempt is kept.
#pragma once

#include <algorithm>
#include <array>
#include <compare>
#include <vector>

#include "tools/des_sboxes/circuit.h"
#include "tools/des_sboxes/random.h"

namespace latchkey::sboxes {

// The quality of an order, the most important first.
struct Cost {
  int excess = 0;  // the most live values at once, less the registers
  int cycles = 0;  // on a machine that starts up to three gates in a cycle, in this order
  int live = 0;    // the live values after each gate, summed

  auto operator<=>(const Cost&) const = default;
};

template <int arity>
class Scheduler {
 public:
  Scheduler(const Circuit<arity>& circuit, Random& random) : circuit_(circuit), random_(random) {}

  // Makes one attempt. The inputs are live from the start, and each value until its last reader. An
  // output is used at once, so it does not stay live.
  Cost Run(std::vector<int>& order) {
    Reset();
    Cost cost;
    int live = kInputs;
    order.clear();
    while (static_cast<int>(order.size()) < circuit_.GateCount()) {
      const int gate = Choose();
      live += Change(gate);
      cost.excess = std::max(cost.excess, live - kRegisters);
      cost.live += live;
      Take(gate);
      order.push_back(gate);
    }
    cost.cycles = cycle_;
    return cost;
  }

 private:
  static constexpr int kRegisters = 12;  // of 16; the others are for keys and outputs
  static constexpr int kWidth = 3;       // gates started in a cycle

  void Reset() {
    cycle_ = 0;
    started_ = 0;
    finished_.fill(0);
    isByTime_ = random_.Below(16);
    readers_.fill(0);
    isDone_.fill(false);
    std::fill_n(isDone_.begin(), kInputs, true);
    for (int i = kInputs; i < circuit_.SignalCount(); ++i) {
      for (const int input : circuit_.GateOf(i).inputs) ++readers_[input];
    }
  }

  [[nodiscard]] bool IsReady(int gate) const {
    const auto& inputs = circuit_.GateOf(gate).inputs;
    return !isDone_[gate] &&
           std::all_of(inputs.begin(), inputs.end(), [&](int input) { return isDone_[input]; });
  }

  // How many more values are live after the gate.
  [[nodiscard]] int Change(int gate) const {
    int change = readers_[gate] > 0 ? 1 : 0;
    for (const int input : circuit_.GateOf(gate).inputs) {
      if (readers_[input] == 1) --change;
    }
    return change;
  }

  // The cycle in which the gate's inputs are known.
  [[nodiscard]] int ReadyAt(int gate) const {
    int cycle = cycle_;
    for (const int input : circuit_.GateOf(gate).inputs) cycle = std::max(cycle, finished_[input]);
    return cycle;
  }

  // Prefers gates after which few values are live, or those that need not wait.
  int Choose() {
    const bool isByTime = random_.Below(16) < isByTime_;
    const auto costOf = [&](int gate) { return isByTime ? ReadyAt(gate) : Change(gate); };
    const bool isAny = random_.Below(16) == 0;
    int chosen = -1;
    int ties = 0;
    for (int i = kInputs; i < circuit_.SignalCount(); ++i) {
      if (!IsReady(i)) continue;
      const bool isWorse = chosen >= 0 && !isAny && costOf(i) > costOf(chosen);
      const bool isBetter = chosen < 0 || (!isAny && costOf(i) < costOf(chosen));
      if (isWorse) continue;
      if (isBetter) ties = 0;
      if (random_.Below(++ties) == 0) chosen = i;
    }
    return chosen;
  }

  void Take(int gate) {
    const int cycle = ReadyAt(gate);
    started_ = cycle == cycle_ ? started_ + 1 : 1;
    cycle_ = started_ > kWidth ? cycle + 1 : cycle;
    if (started_ > kWidth) started_ = 1;
    finished_[gate] = cycle_ + 1;
    isDone_[gate] = true;
    for (const int input : circuit_.GateOf(gate).inputs) --readers_[input];
  }

  const Circuit<arity>& circuit_;
  Random& random_;
  std::array<int, Circuit<arity>::kCapacity> readers_{};
  std::array<bool, Circuit<arity>::kCapacity> isDone_{};
  std::array<int, Circuit<arity>::kCapacity>
      finished_{};  // the cycle from which the value is known
  int cycle_ = 0;
  int started_ = 0;   // in this cycle
  int isByTime_ = 0;  // of 16 choices
};

// The same circuit in the best order of many attempts.
template <int arity>
Circuit<arity> Ordered(const Circuit<arity>& circuit) {
  constexpr int kAttempts = 20000;
  Random random(1);
  Scheduler<arity> scheduler(circuit, random);
  std::vector<int> best;
  Cost least = scheduler.Run(best);
  for (int i = 1; i < kAttempts; ++i) {
    std::vector<int> order;
    const Cost cost = scheduler.Run(order);
    if (cost >= least) continue;
    least = cost;
    best = order;
  }
  Circuit<arity> ordered;
  std::array<int, Circuit<arity>::kCapacity> places{};
  for (int i = 0; i < kInputs; ++i) places[i] = i;
  for (const int gate : best) {
    Gate<arity> moved = circuit.GateOf(gate);
    for (int& input : moved.inputs) input = places[input];
    places[gate] = ordered.Add(moved);
  }
  for (int i = 0; i < kOutputs; ++i) ordered.outputs[i] = places[circuit.outputs[i]];
  return ordered;
}

}  // namespace latchkey::sboxes
