// Improves a circuit by random steps, each of which replaces one gate: resubstitution with don't-
// cares (A. Mishchenko and others, "Scalable Don't-Care-Based Logic Optimization and Resynthesis",
// 2009). A gate matters only in the positions where an output changes with it. There, other signals
// may serve in its place, or a tree of gates over them; the gates that only it needed are removed.
//
// Steps that keep the count are taken as well, and a few that add a gate: they lead to circuits
// from which another gate can be removed.
#pragma once

#include <algorithm>
#include <array>

#include "tools/des_sboxes/circuit.h"
#include "tools/des_sboxes/random.h"
#include "tools/des_sboxes/supports.h"
#include "tools/des_sboxes/tree.h"

namespace latchkey::sboxes {

template <int arity>
class Walk {
 public:
  Walk(Circuit<arity>& circuit, Random& random) : circuit_(circuit), random_(random) {}

  // Takes one step. `mayGrow` permits one more gate.
  void Step(bool mayGrow) {
    const int signal = kInputs + random_.Below(circuit_.GateCount());
    const Wanted wanted = WantedUnder(circuit_.Truths()[signal], CareOf(signal));
    FindCandidates();
    if (UseExisting(signal, wanted)) return;
    ForgetCandidatesBeyond(Supports::kMaxSignals);
    MarkFreed(signal);
    const int extra = mayGrow && random_.Chance(kGrowth) ? 1 : 0;
    const int most = std::min(kMaxTree, freedCount_ + extra);
    const int first = random_.Below(most);
    const int gates = 1 + std::min(first, random_.Below(most));
    Replace(signal, wanted, gates, extra);
  }

 private:
  static constexpr int kMaxTree = arity == 2 ? 4 : 2;  // gates
  static constexpr double kGrowth = 0.05;              // share of steps that may add a gate
  static constexpr int kBudget = 1500;                 // steps of the search for a tree's leaves
  static constexpr int kEnough = 8;                    // trees to choose from
  static constexpr int kCapacity = Circuit<arity>::kCapacity;
  using Marks = std::array<bool, kCapacity>;

  // The positions in which an output depends on the signal. Marks the signals that depend on it.
  Truth CareOf(int signal) {
    std::array<Truth, kCapacity> truths;
    std::copy_n(circuit_.Truths(), circuit_.SignalCount(), truths.begin());
    truths[signal] = ~truths[signal];
    dependent_.fill(false);
    dependent_[signal] = true;
    for (int i = signal + 1; i < circuit_.SignalCount(); ++i) {
      const Gate<arity>& gate = circuit_.GateOf(i);
      for (const int input : gate.inputs) dependent_[i] |= dependent_[input];
      if (dependent_[i]) truths[i] = TruthOf<arity>(truths.data(), gate);
    }
    Truth care = 0;
    for (const int output : circuit_.outputs) care |= truths[output] ^ circuit_.Truths()[output];
    return care;
  }

  void FindCandidates() {
    candidateCount_ = 0;
    for (int i = 0; i < circuit_.SignalCount(); ++i) {
      if (!dependent_[i]) candidates_[candidateCount_++] = i;
    }
  }

  void ForgetCandidatesBeyond(int count) {
    for (; candidateCount_ > count; --candidateCount_) {
      candidates_[random_.Below(candidateCount_)] = candidates_[candidateCount_ - 1];
    }
  }

  bool UseExisting(int signal, const Wanted& wanted) {
    for (int i = 0; i < candidateCount_; ++i) {
      const Truth truth = circuit_.Truths()[candidates_[i]];
      if (!Serves(truth, wanted)) continue;
      const bool isComplement = ((truth ^ wanted.ones) & wanted.Care()) != 0;
      circuit_.Substitute(signal, candidates_[i], isComplement);
      circuit_.Compact();
      return true;
    }
    return false;
  }

  // Marks the gates that only this one needs. Counts them, and this one.
  void MarkFreed(int signal) {
    std::array<int, kCapacity> readers{};
    for (int i = kInputs; i < circuit_.SignalCount(); ++i) {
      for (const int input : circuit_.GateOf(i).inputs) ++readers[input];
    }
    for (const int output : circuit_.outputs) ++readers[output];
    freed_.fill(false);
    freedCount_ = 1;
    MarkFreedInputs(signal, readers);
  }

  void MarkFreedInputs(int signal, std::array<int, kCapacity>& readers) {
    for (const int input : circuit_.GateOf(signal).inputs) {
      if (input < kInputs || --readers[input] > 0) continue;
      freed_[input] = true;
      ++freedCount_;
      MarkFreedInputs(input, readers);
    }
  }

  // How many of the freed gates the signal needs.
  int CountKept(int signal, Marks& counted) const {
    if (!freed_[signal] || counted[signal]) return 0;
    counted[signal] = true;
    int count = 1;
    for (const int input : circuit_.GateOf(signal).inputs) count += CountKept(input, counted);
    return count;
  }

  [[nodiscard]] bool IsPresent(int signal, const int* leaves) const {
    Inputs<arity> present = circuit_.GateOf(signal).inputs;
    Inputs<arity> other;
    std::copy_n(leaves, arity, other.begin());
    std::sort(present.begin(), present.end());
    std::sort(other.begin(), other.end());
    return present == other;
  }

  // Replaces the gate by a tree of up to `gates` gates: one of the found trees that save the most.
  void Replace(int signal, const Wanted& wanted, int gates, int extra) {
    std::array<Truth, Supports::kMaxSignals> truths;
    for (int i = 0; i < candidateCount_; ++i) truths[i] = circuit_.Truths()[candidates_[i]];
    Supports supports(truths.data(), candidateCount_, random_);
    int best = -extra - 1;
    int ties = 0;
    int found = 0;
    Tree<arity> bestTree(nullptr, nullptr, 0);
    supports.Enumerate(wanted, gates * (arity - 1) + 1, gates == 1 ? 100000 : kBudget,
                       [&](const int* indexes, int size) {
                         std::array<int, Supports::kMaxSize> leaves;
                         for (int i = 0; i < size; ++i) leaves[i] = candidates_[indexes[i]];
                         if (gates == 1 && size == arity && IsPresent(signal, leaves.data()))
                           return false;
                         int saved = freedCount_ - gates;
                         Marks counted{};
                         for (int i = 0; i < size; ++i) saved -= CountKept(leaves[i], counted);
                         if (saved < best || saved < -extra) return false;
                         if (saved == best && random_.Below(ties + 1) != 0) {
                           ++ties;
                           return false;
                         }
                         Tree<arity> tree(circuit_.Truths(), leaves.data(), size);
                         if (!tree.Build(wanted, random_)) return false;
                         ties = saved > best ? 1 : ties + 1;
                         best = saved;
                         bestTree = tree;
                         ++found;
                         return gates > 1 && found >= kEnough;
                       });
    if (found == 0) return;
    circuit_.Substitute(signal, bestTree.AddTo(circuit_), false);
    circuit_.Compact();
  }

  Circuit<arity>& circuit_;
  Random& random_;
  Marks dependent_{};
  Marks freed_{};
  int freedCount_ = 0;
  std::array<int, kCapacity> candidates_{};
  int candidateCount_ = 0;
};

}  // namespace latchkey::sboxes
