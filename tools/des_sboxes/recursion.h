// Finds a first circuit, after M. Kwan, "Reducing the Gate Count of Bitslice DES" (IACR ePrint
// 2000/051). An output is sought under a mask of the positions that matter: among the existing
// signals, then as a tree of a few gates over them, and otherwise as a choice, by one input of the
// box, between the results of two such searches, each with half of the mask. This way signals are
// shared, and deeper searches have fewer positions that matter.
#pragma once

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "tools/des_sboxes/circuit.h"
#include "tools/des_sboxes/random.h"
#include "tools/des_sboxes/supports.h"
#include "tools/des_sboxes/tree.h"

namespace latchkey::sboxes {

template <int arity>
class Recursion {
 public:
  Recursion(Circuit<arity>& circuit, Random& random) : circuit_(circuit), random_(random) {}

  // Returns the signal of the target or its complement under the mask, after adding at most `limit`
  // gates; -1 if that is not enough. `used` are the inputs that the mask depends on.
  int Find(Truth target, Truth mask, int limit, unsigned used = 0) {
    const Wanted wanted = WantedUnder(target, mask);
    int signal = FindExisting(wanted);
    if (signal >= 0 || limit < 1) return signal;
    signal = AddTree(wanted, limit);
    if (signal >= 0 || limit < 2) return signal;
    return FindByChoice(target, mask, limit, used);
  }

 private:
  static constexpr int kMaxTree = arity == 2 ? 3 : 2;  // gates
  static constexpr int kBudget = 2000;                 // steps of the search for a tree's leaves

  int FindExisting(const Wanted& wanted) {
    const int count = circuit_.SignalCount();
    const int first = random_.Below(count);
    for (int i = 0; i < count; ++i) {
      const int signal = (first + i) % count;
      if (Serves(circuit_.Truths()[signal], wanted)) return signal;
    }
    return -1;
  }

  int AddTree(const Wanted& wanted, int limit) {
    // Of a large circuit, the inputs and the latest gates.
    const int count = std::min(circuit_.SignalCount(), Supports::kMaxSignals);
    std::array<int, Supports::kMaxSignals> candidates;
    std::array<Truth, Supports::kMaxSignals> truths;
    for (int i = 0; i < count; ++i) {
      candidates[i] = i < kInputs ? i : circuit_.SignalCount() - count + i;
      truths[i] = circuit_.Truths()[candidates[i]];
    }
    Supports supports(truths.data(), count, random_);
    int signal = -1;
    for (int gates = 1; gates <= std::min(kMaxTree, limit) && signal < 0; ++gates) {
      supports.Enumerate(wanted, gates * (arity - 1) + 1, gates == 1 ? 100000 : kBudget,
                         [&](const int* indexes, int size) {
                           std::array<int, Supports::kMaxSize> leaves;
                           for (int i = 0; i < size; ++i) leaves[i] = candidates[indexes[i]];
                           Tree<arity> tree(circuit_.Truths(), leaves.data(), size);
                           if (!tree.Build(wanted, random_)) return false;
                           signal = tree.AddTo(circuit_);
                           return true;
                         });
    }
    return signal;
  }

  // Tries inputs of the box for the choice, two in the first level and one in the others, and keeps
  // the smallest result.
  int FindByChoice(Truth target, Truth mask, int limit, unsigned used) {
    std::array<int, kInputs> inputs;
    int count = 0;
    for (int i = 0; i < kInputs; ++i) {
      if ((used >> i & 1) == 0) inputs[count++] = i;
    }
    if (count == 0) return -1;
    random_.Shuffle(inputs.data(), count);
    const int before = circuit_.SignalCount();
    std::vector<Gate<arity>> best;
    int bestSignal = -1;
    for (int i = 0; i < std::min(used == 0 ? 2 : 1, count); ++i) {
      circuit_.Truncate(before);
      const int signal = AddChoice(target, mask, limit, used, inputs[i]);
      if (signal < 0) continue;
      bestSignal = signal;
      best = circuit_.GatesFrom(before);
      limit = static_cast<int>(best.size()) - 1;
    }
    circuit_.Truncate(before);
    for (const Gate<arity>& gate : best) circuit_.Add(gate);
    return bestSignal;
  }

  int AddChoice(Truth target, Truth mask, int limit, unsigned used, int input) {
    used |= 1U << input;
    const Truth truth = circuit_.Truths()[input];
    const Truth first = random_.Coin() ? truth : ~truth;
    if constexpr (arity == 2) {
      return AddTwoGates(target, mask, first, limit, used, input);
    } else {
      return AddMultiplexer(target, mask, first, limit, used, input);
    }
  }

  int AddGate(const Inputs<arity>& inputs, const Wanted& wanted) {
    return circuit_.Add(GateFor<arity>(circuit_.Truths(), inputs, wanted, random_));
  }

  // `first` is the half of the positions that is searched first.
  int AddMultiplexer(Truth target, Truth mask, Truth first, int limit, unsigned used, int input) {
    const int before = circuit_.SignalCount();
    const int one = Find(target, mask & first, limit - 1, used);
    if (one < 0) return -1;
    const int other =
        Find(target, mask & ~first, limit - 1 - (circuit_.SignalCount() - before), used);
    if (other < 0 || circuit_.SignalCount() - before + 1 > limit) return -1;
    return AddGate({input, one, other}, WantedUnder(target, mask));
  }

  // Finds a signal for the first half, and adds the change that it needs in the second half. If the
  // target is constant in the first half, one gate is enough.
  int AddTwoGates(Truth target, Truth mask, Truth first, int limit, unsigned used, int input) {
    const Wanted wanted = WantedUnder(target, mask);
    if ((wanted.ones & first) == 0 || (wanted.zeros & first) == 0) {
      const int other = Find(target, mask & ~first, limit - 1, used);
      return other < 0 ? -1 : AddGate({input, other}, wanted);
    }
    const int before = circuit_.SignalCount();
    const int one = Find(target, mask & first, limit - 2, used);
    if (one < 0) return -1;
    Truth change = target ^ circuit_.Truths()[one];
    if ((change & mask & first) != 0) change = ~change;
    const int left = limit - 2 - (circuit_.SignalCount() - before);
    if (left < 0) return -1;
    const int other = Find(change, mask & ~first, left, used);
    if (other < 0) return -1;
    const bool isSame = ((circuit_.Truths()[other] ^ change) & mask & ~first) == 0;
    const bool isInverted = random_.Below(2) != 0;
    Truth added = ~first & (isSame ? circuit_.Truths()[other] : ~circuit_.Truths()[other]);
    if (isInverted) added = ~added;
    const int gate = AddGate({input, other}, WantedUnder(added, ~Truth{0}));
    return AddGate({one, gate}, wanted);
  }

  Circuit<arity>& circuit_;
  Random& random_;
};

// Makes a circuit of at most `limit` gates, one output after the other in random order. Returns
// false if that is not enough.
template <int arity>
bool MakeFirstCircuit(const Targets& targets, int limit, Random& random, Circuit<arity>& circuit) {
  std::array<int, kOutputs> order;
  std::iota(order.begin(), order.end(), 0);
  random.Shuffle(order.data(), kOutputs);
  circuit = {};
  for (const int output : order) {
    Recursion<arity> recursion(circuit, random);
    const int signal = recursion.Find(targets[output], ~Truth{0}, limit - circuit.GateCount());
    if (signal < 0) return false;
    circuit.outputs[output] = signal;
  }
  circuit.Compact();
  return true;
}

}  // namespace latchkey::sboxes
