// Trees of gates that compute a wanted function of few signals, each of which is read once.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "tools/des_sboxes/circuit.h"
#include "tools/des_sboxes/random.h"

namespace latchkey::sboxes {

// A table for these inputs, which determine the function. Rows that do not matter are random.
template <int arity>
[[nodiscard]] Gate<arity> GateFor(const Truth* truths, const Inputs<arity>& inputs,
                                  const Wanted& wanted, Random& random) {
  Gate<arity> gate{inputs, 0};
  const unsigned free = random.Bits();
  for (unsigned row = 0; row < 1U << arity; ++row) {
    const Truth cell = Cell<arity>(truths, inputs, row);
    const bool isFree = ((wanted.ones | wanted.zeros) & cell) == 0;
    if ((cell & wanted.ones) != 0 || (isFree && (free >> row & 1) != 0)) gate.table |= 1U << row;
  }
  return gate;
}

// For one combination of the outer signals: the rows of the inner gate in which the function must
// be one and zero, a bit for each row.
struct InnerRows {
  unsigned ones;
  unsigned zeros;
};

// Finds a table for the inner gate that differs between the rows of ones and of zeros of each
// combination. Returns false if no table does.
[[nodiscard]] bool FindInnerTable(const InnerRows* combinations, int count, unsigned allRows,
                                  Random& random, unsigned& table);

template <int arity>
class Tree {
 public:
  // The leaves are `count` signals that determine the function.
  Tree(const Truth* truths, const int* leaves, int count) : leafCount_(count), count_(count) {
    for (int i = 0; i < count; ++i) {
      leaves_[i] = leaves[i];
      truths_[i] = truths[leaves[i]];
    }
  }

  // Looks for gates; returns false if no tree computes the function.
  bool Build(const Wanted& wanted, Random& random) {
    std::array<int, kMaxNodes> nodes{};
    for (int i = 0; i < leafCount_; ++i) nodes[i] = i;
    return Combine(nodes, leafCount_, wanted, random);
  }

  // Adds the gates to the circuit of the leaves; returns the signal of the function.
  int AddTo(Circuit<arity>& circuit) const {
    std::array<int, kMaxNodes> signals = leaves_;
    for (int i = leafCount_; i < count_; ++i) {
      Gate<arity> gate = gates_[i];
      for (int& input : gate.inputs) input = signals[input];
      signals[i] = circuit.Add(gate);
    }
    return signals[count_ - 1];
  }

 private:
  static constexpr int kMaxNodes = 16;
  using Nodes = std::array<int, kMaxNodes>;
  using Choices = std::array<Inputs<arity>, 64>;

  // All sets of `arity` of the numbers below `count`.
  static int ChooseInputs(int count, Choices& choices) {
    Inputs<arity> choice;
    for (int i = 0; i < arity; ++i) choice[i] = i;
    for (int n = 0;; ++n) {
      choices[n] = choice;
      int i = arity - 1;
      while (i >= 0 && choice[i] == count - arity + i) --i;
      if (i < 0) return n + 1;
      ++choice[i];
      for (int k = i + 1; k < arity; ++k) choice[k] = choice[k - 1] + 1;
    }
  }

  void AddGate(const Gate<arity>& gate) {
    gates_[count_] = gate;
    truths_[count_] = TruthOf<arity>(truths_.data(), gate);
    ++count_;
  }

  // Computes the function from `count` nodes: from `arity` with one gate; from more by choosing
  // `arity` for an inner gate, which replaces them.
  bool Combine(const Nodes& nodes, int count, const Wanted& wanted, Random& random) {
    if (count <= arity) {
      Inputs<arity> inputs;
      for (int i = 0; i < arity; ++i) inputs[i] = nodes[std::min(i, count - 1)];
      AddGate(GateFor<arity>(truths_.data(), inputs, wanted, random));
      return true;
    }
    Choices choices;
    const int choiceCount = ChooseInputs(count, choices);
    const int first = random.Below(choiceCount);
    const int countBefore = count_;
    for (int i = 0; i < choiceCount; ++i) {
      const Inputs<arity>& choice = choices[(first + i) % choiceCount];
      Inputs<arity> inner;
      Nodes outer{};
      Divide(nodes, count, choice, inner, outer);
      unsigned table = 0;
      if (!FindInner(inner, outer, count - arity, wanted, random, table)) continue;
      outer[count - arity] = count_;
      AddGate({inner, table});
      if (Combine(outer, count - arity + 1, wanted, random)) return true;
      count_ = countBefore;
    }
    return false;
  }

  static void Divide(const Nodes& nodes, int count, const Inputs<arity>& choice,
                     Inputs<arity>& inner, Nodes& outer) {
    int outerCount = 0;
    int innerCount = 0;
    for (int i = 0; i < count; ++i) {
      if (innerCount < arity && choice[innerCount] == i) {
        inner[innerCount++] = nodes[i];
      } else {
        outer[outerCount++] = nodes[i];
      }
    }
  }

  bool FindInner(const Inputs<arity>& inner, const Nodes& outer, int outerCount,
                 const Wanted& wanted, Random& random, unsigned& table) const {
    std::array<Truth, 1U << arity> cells;
    for (unsigned row = 0; row < cells.size(); ++row) {
      cells[row] = Cell<arity>(truths_.data(), inner, row);
    }
    std::array<InnerRows, 64> combinations;
    const unsigned combinationCount = 1U << outerCount;
    for (unsigned n = 0; n < combinationCount; ++n) {
      Truth part = ~Truth{0};
      for (int i = 0; i < outerCount; ++i) {
        part &= (n >> i & 1) != 0 ? truths_[outer[i]] : ~truths_[outer[i]];
      }
      InnerRows rows{0, 0};
      for (unsigned row = 0; row < cells.size(); ++row) {
        if ((cells[row] & part & wanted.ones) != 0) rows.ones |= 1U << row;
        if ((cells[row] & part & wanted.zeros) != 0) rows.zeros |= 1U << row;
      }
      combinations[n] = rows;
    }
    return FindInnerTable(combinations.data(), static_cast<int>(combinationCount),
                          (1U << cells.size()) - 1, random, table);
  }

  int leafCount_;
  int count_;  // leaves and gates
  Nodes leaves_{};
  std::array<Truth, kMaxNodes> truths_{};
  std::array<Gate<arity>, kMaxNodes> gates_{};
};

}  // namespace latchkey::sboxes
