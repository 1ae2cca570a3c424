#include "tools/des_sboxes/supports.h"

#include <algorithm>

namespace latchkey::sboxes {

Supports::Supports(const Truth* truths, int count, Random& random)
    : count_(count), random_(random) {
  std::copy_n(truths, count, truths_.begin());
  columns_ = truths_;
  for (unsigned distance = 32; distance > 0; distance /= 2) {
    const Truth low = ~Truth{0} / ((Truth{1} << distance) + 1);
    for (unsigned i = 0; i < 64; ++i) {
      if ((i & distance) != 0) continue;
      const Truth changed = ((columns_[i] >> distance) ^ columns_[i + distance]) & low;
      columns_[i] ^= changed << distance;
      columns_[i + distance] ^= changed;
    }
  }
}

Supports::Set Supports::Separating(const Wanted* cells, int count, Set allowed) const {
  for (int i = 0; i < count && allowed != 0; ++i) {
    const auto [ones, zeros] = cells[i];
    for (Truth rest = zeros; rest != 0; rest &= rest - 1) allowed &= Different(ones, rest);
    for (Truth rest = ones; rest != 0; rest &= rest - 1) allowed &= Different(rest, zeros);
  }
  return allowed;
}

Supports::Set Supports::SmallestChoice(const Wanted* cells, int count, Set allowed) const {
  Set best = 0;
  int bestCount = kMaxSignals + 1;
  for (int i = 0; i < count; ++i) {
    for (Truth ones = cells[i].ones; ones != 0; ones &= ones - 1) {
      for (Truth zeros = cells[i].zeros; zeros != 0; zeros &= zeros - 1) {
        const Set choice = Different(ones, zeros) & allowed;
        const int size = std::popcount(choice);
        if (size >= bestCount) continue;
        if (size == 0) return 0;
        best = choice;
        bestCount = size;
      }
    }
  }
  return best;
}

int Supports::Split(const Wanted* cells, int count, int index, Wanted* parts) const {
  int partCount = 0;
  for (int i = 0; i < count; ++i) {
    for (const Truth half : {truths_[index], ~truths_[index]}) {
      const Wanted part{.ones = cells[i].ones & half, .zeros = cells[i].zeros & half};
      if (part.ones != 0 && part.zeros != 0) parts[partCount++] = part;
    }
  }
  return partCount;
}

}  // namespace latchkey::sboxes
