// The search for a small circuit of one S-box.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tools/des_sboxes/circuit.h"
#include "tools/des_sboxes/random.h"
#include "tools/des_sboxes/recursion.h"
#include "tools/des_sboxes/walk.h"

namespace latchkey::sboxes {

// How much to search. The same effort finds the same circuit on every machine.
struct Effort {
  std::uint64_t seed;
  int circuits;  // improved side by side
  int rounds;    // after every other one, the better half of the circuits replaces the others
  int steps;     // of each circuit in each round
};

// The smallest of ten first circuits.
template <int arity>
Circuit<arity> MakeStart(const Targets& targets, Random& random) {
  constexpr int kLimit = arity == 2 ? 90 : 50;  // gates
  Circuit<arity> best;
  for (int made = 0; made < 10;) {
    Circuit<arity> circuit;
    if (!MakeFirstCircuit<arity>(targets, kLimit, random, circuit)) continue;
    if (made == 0 || circuit.GateCount() < best.GateCount()) best = circuit;
    ++made;
  }
  return best;
}

// Takes random steps from a circuit, at most two gates above the smallest so far. Returns the last
// of the smallest circuits.
template <int arity>
Circuit<arity> Improve(const Circuit<arity>& start, int steps, Random& random) {
  constexpr int kMostAbove = 2;
  Circuit<arity> circuit = start;
  Circuit<arity> best = start;
  Walk<arity> walk(circuit, random);
  bool isFirst = true;
  for (int i = 0; i < steps; ++i) {
    walk.Step(isFirst || circuit.GateCount() < best.GateCount() + kMostAbove);
    isFirst = false;
    if (circuit.GateCount() <= best.GateCount()) best = circuit;
  }
  return best;
}

template <int arity>
Circuit<arity> Search(unsigned box, const Effort& effort) {
  const Targets targets = TargetsOf(box);
  Random random(effort.seed * 8 + box);
  std::vector<Circuit<arity>> circuits;
  for (int i = 0; i < effort.circuits; ++i) circuits.push_back(MakeStart<arity>(targets, random));
  for (int round = 0; round < effort.rounds; ++round) {
    for (Circuit<arity>& circuit : circuits) circuit = Improve(circuit, effort.steps, random);
    std::stable_sort(circuits.begin(), circuits.end(),
                     [](const auto& a, const auto& b) { return a.GateCount() < b.GateCount(); });
    if (round % 2 != 0 || round + 1 == effort.rounds) continue;
    std::copy_n(circuits.begin(), circuits.size() / 2,
                circuits.begin() + static_cast<std::ptrdiff_t>(circuits.size() / 2));
  }
  return circuits.front();
}

}  // namespace latchkey::sboxes
