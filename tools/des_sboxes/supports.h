// Search for sets of signals that determine a wanted function: for every two positions
// where the function has different values, at least one of the signals must differ as well.
#pragma once

#include <array>
#include <bit>

#include "tools/des_sboxes/circuit.h"
#include "tools/des_sboxes/random.h"

namespace latchkey::sboxes {

class Supports {
 public:
  static constexpr int kMaxSignals = 64;
  static constexpr int kMaxSize = 8;

  // `truths` has the truth tables of the `count` candidates.
  Supports(const Truth* truths, int count, Random& random);

  // Calls accept(indexes, size) for sets of up to `size` candidates, in random order, until it
  // returns true. Gives up after `budget` steps.
  template <class Accept>
  void Enumerate(const Wanted& wanted, int size, int budget, Accept&& accept) {
    if (wanted.ones == 0 || wanted.zeros == 0) return;
    budget_ = budget;
    const Truth all = count_ == kMaxSignals ? ~Truth{0} : (Truth{1} << count_) - 1;
    Extend(&wanted, 1, 0, size, all, accept);
  }

 private:
  using Set = std::uint64_t;  // bit n: candidate n
  static constexpr int kMaxCells = 128;

  // The candidates that differ in the positions `one` and `zero`.
  [[nodiscard]] Set Different(Truth one, Truth zero) const {
    return columns_[std::countr_zero(one)] ^ columns_[std::countr_zero(zero)];
  }

  // The candidates of `allowed` each of which alone separates the ones and zeros of every cell.
  [[nodiscard]] Set Separating(const Wanted* cells, int count, Set allowed) const;

  // The smallest set of candidates of which one is needed, because only these differ in some pair
  // of a one and a zero. Empty if no candidate differs in a pair.
  [[nodiscard]] Set SmallestChoice(const Wanted* cells, int count, Set allowed) const;

  // The parts of the cells that still contain ones and zeros when candidate `index` is known.
  int Split(const Wanted* cells, int count, int index, Wanted* parts) const;

  template <class Accept>
  bool Extend(const Wanted* cells, int count, int depth, int left, Set allowed, Accept& accept) {
    if (count == 0) return accept(chosen_.data(), depth);
    if (left == 1) {
      for (Set set = Separating(cells, count, allowed); set != 0; set &= set - 1) {
        chosen_[depth] = std::countr_zero(set);
        if (accept(chosen_.data(), depth + 1)) return true;
      }
      return false;
    }
    Set choice = SmallestChoice(cells, count, allowed);
    if (choice == 0) return false;
    if (--budget_ < 0) return true;
    std::array<int, kMaxSignals> order;
    int choices = 0;
    for (; choice != 0; choice &= choice - 1) order[choices++] = std::countr_zero(choice);
    random_.Shuffle(order.data(), choices);
    std::array<Wanted, kMaxCells> parts;
    for (int i = 0; i < choices; ++i) {
      allowed &= ~(Set{1} << order[i]);
      chosen_[depth] = order[i];
      const int partCount = Split(cells, count, order[i], parts.data());
      if (Extend(parts.data(), partCount, depth + 1, left - 1, allowed, accept)) return true;
    }
    return false;
  }

  std::array<Truth, kMaxSignals> truths_{};
  std::array<Set, 64> columns_{};  // for each position, the candidates that are one there
  int count_;
  int budget_ = 0;
  std::array<int, kMaxSize> chosen_{};
  Random& random_;
};

}  // namespace latchkey::sboxes
