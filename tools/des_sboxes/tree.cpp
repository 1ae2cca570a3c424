#include "tools/des_sboxes/tree.h"

#include <bit>

namespace latchkey::sboxes {
namespace {

// Colors each row one or zero. The two sets of a combination must have different colors, so a
// colored row decides the colors of every combination that contains it.
class Coloring {
 public:
  [[nodiscard]] bool IsConsistent() const { return (ones_ & zeros_) == 0; }
  [[nodiscard]] unsigned Ones() const { return ones_; }
  [[nodiscard]] unsigned Zeros() const { return zeros_; }

  [[nodiscard]] bool FitsSame(const InnerRows& rows) const {
    return (rows.ones & ones_) != 0 || (rows.zeros & zeros_) != 0;
  }

  [[nodiscard]] bool FitsExchanged(const InnerRows& rows) const {
    return (rows.ones & zeros_) != 0 || (rows.zeros & ones_) != 0;
  }

  void Add(const InnerRows& rows, bool isExchanged) {
    ones_ |= isExchanged ? rows.zeros : rows.ones;
    zeros_ |= isExchanged ? rows.ones : rows.zeros;
  }

 private:
  unsigned ones_ = 0;
  unsigned zeros_ = 0;
};

}  // namespace

bool FindInnerTable(const InnerRows* combinations, int count, unsigned allRows, Random& random,
                    unsigned& table) {
  std::uint64_t open = 0;
  for (int i = 0; i < count; ++i) {
    if (combinations[i].ones != 0 && combinations[i].zeros != 0) open |= std::uint64_t{1} << i;
  }
  Coloring coloring;
  while (open != 0) {
    bool hasProgress = false;
    for (int i = 0; i < count; ++i) {
      if ((open >> i & 1) == 0) continue;
      const bool isSame = coloring.FitsSame(combinations[i]);
      const bool isExchanged = coloring.FitsExchanged(combinations[i]);
      if (isSame && isExchanged) return false;
      if (!isSame && !isExchanged) continue;
      coloring.Add(combinations[i], isExchanged);
      if (!coloring.IsConsistent()) return false;
      open &= ~(std::uint64_t{1} << i);
      hasProgress = true;
    }
    if (hasProgress) continue;
    const InnerRows& first = combinations[std::countr_zero(open)];
    coloring.Add(first, !random.Coin());
    if (!coloring.IsConsistent()) return false;
    open &= open - 1;
  }
  table = (coloring.Ones() | (random.Bits() & ~coloring.Zeros())) & allRows;
  return true;
}

}  // namespace latchkey::sboxes
