// Circuits of look-up tables with `arity` inputs over the six inputs of an S-box. The truth table
// of a signal is one 64-bit number: bit n is its value when the inputs are the bits of n, the first
// input being the highest bit.
//
// A signal may carry a function or its complement: the table that reads it absorbs the difference.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace latchkey::sboxes {

using Truth = std::uint64_t;

inline constexpr int kInputs = 6;
inline constexpr int kOutputs = 4;

using Targets = std::array<Truth, kOutputs>;

[[nodiscard]] Truth InputTruth(int input);
[[nodiscard]] Targets TargetsOf(unsigned box);

// The positions where a function must be one and where it must be zero; the others do not matter.
struct Wanted {
  Truth ones;
  Truth zeros;

  [[nodiscard]] Truth Care() const { return ones | zeros; }
};

[[nodiscard]] inline Wanted WantedUnder(Truth target, Truth mask) {
  return {.ones = target & mask, .zeros = ~target & mask};
}

// Whether the function or its complement has the wanted values.
[[nodiscard]] inline bool Serves(Truth truth, const Wanted& wanted) {
  const Truth difference = (truth ^ wanted.ones) & wanted.Care();
  return difference == 0 || difference == wanted.Care();
}

template <int arity>
using Inputs = std::array<int, arity>;

template <int arity>
struct Gate {
  Inputs<arity> inputs{};
  unsigned table = 0;  // bit r: the value when the inputs are the bits of r, first input highest
};

// The positions where the inputs are the bits of `row`.
template <int arity>
[[nodiscard]] Truth Cell(const Truth* truths, const Inputs<arity>& inputs, unsigned row) {
  Truth cell = ~Truth{0};
  for (int i = 0; i < arity; ++i) {
    const Truth truth = truths[inputs[i]];
    cell &= (row >> (arity - 1 - i) & 1) != 0 ? truth : ~truth;
  }
  return cell;
}

template <int arity>
[[nodiscard]] Truth TruthOf(const Truth* truths, const Gate<arity>& gate) {
  Truth truth = 0;
  for (unsigned row = 0; row < 1U << arity; ++row) {
    if ((gate.table >> row & 1) != 0) truth |= Cell<arity>(truths, gate.inputs, row);
  }
  return truth;
}

// Signals 0 to 5 are the inputs, the others the gates. Each gate reads earlier signals.
template <int arity>
class Circuit {
 public:
  static constexpr int kCapacity = 120;  // signals

  Circuit() {
    for (int i = 0; i < kInputs; ++i) truths_[i] = InputTruth(i);
  }

  [[nodiscard]] int SignalCount() const { return count_; }
  [[nodiscard]] int GateCount() const { return count_ - kInputs; }
  [[nodiscard]] const Truth* Truths() const { return truths_.data(); }
  [[nodiscard]] const Gate<arity>& GateOf(int signal) const { return gates_[signal]; }

  // The signals of the outputs; -1 for an output that has no signal yet.
  std::array<int, kOutputs> outputs{-1, -1, -1, -1};

  // Returns the new gate's signal.
  int Add(const Gate<arity>& gate) {
    gates_[count_] = gate;
    truths_[count_] = TruthOf<arity>(truths_.data(), gate);
    return count_++;
  }

  void Truncate(int signals) { count_ = signals; }

  // The gates from `signal` on.
  [[nodiscard]] std::vector<Gate<arity>> GatesFrom(int signal) const {
    return {gates_.begin() + signal, gates_.begin() + count_};
  }

  // Makes all readers of `signal` read `other`, or its complement. A gate may then read a later
  // one, until Compact is called.
  void Substitute(int signal, int other, bool isComplement) {
    for (int i = kInputs; i < count_; ++i) {
      for (int k = 0; k < arity; ++k) {
        if (gates_[i].inputs[k] == signal) Reconnect(gates_[i], k, other, isComplement);
      }
    }
    for (int& output : outputs) {
      if (output == signal) output = other;
    }
  }

  // Orders the gates and drops those that no output needs.
  void Compact() {
    Circuit sorted;
    std::array<int, kCapacity> places{};
    for (int i = 0; i < kInputs; ++i) places[i] = i;
    for (int i = kInputs; i < count_; ++i) places[i] = -1;
    for (int i = 0; i < kOutputs; ++i) {
      if (outputs[i] >= 0) sorted.outputs[i] = CopyTo(sorted, outputs[i], places);
    }
    *this = sorted;
  }

  [[nodiscard]] bool Computes(const Targets& targets) const {
    for (int i = 0; i < kOutputs; ++i) {
      if (!Serves(truths_[outputs[i]], WantedUnder(targets[i], ~Truth{0}))) return false;
    }
    return true;
  }

 private:
  static void Reconnect(Gate<arity>& gate, int k, int signal, bool isComplement) {
    gate.inputs[k] = signal;
    if (!isComplement) return;
    unsigned table = 0;
    for (unsigned row = 0; row < 1U << arity; ++row) {
      if ((gate.table >> (row ^ (1U << (arity - 1 - k))) & 1) != 0) table |= 1U << row;
    }
    gate.table = table;
  }

  int CopyTo(Circuit& sorted, int signal, std::array<int, kCapacity>& places) const {
    if (places[signal] >= 0) return places[signal];
    Gate<arity> gate = gates_[signal];
    for (int& input : gate.inputs) input = CopyTo(sorted, input, places);
    return places[signal] = sorted.Add(gate);
  }

  int count_ = kInputs;
  std::array<Truth, kCapacity> truths_{};
  std::array<Gate<arity>, kCapacity> gates_{};
};

}  // namespace latchkey::sboxes
