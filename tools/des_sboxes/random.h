// A random number generator that returns the same numbers on every machine (SplitMix64; G. Steele,
// D. Lea and C. Flood, 2014), unlike the distributions of the standard library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace latchkey::sboxes {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
  }

  // A number below `bound`.
  int Below(int bound) {
    return static_cast<int>((Next() >> 32) * static_cast<std::uint64_t>(bound) >> 32);
  }

  unsigned Bits() { return static_cast<unsigned>(Next() >> 40); }

  bool Coin() { return Next() >> 63 != 0; }

  bool Chance(double probability) {
    return static_cast<double>(Next() >> 11) * 0x1p-53 < probability;
  }

  template <class Value>
  void Shuffle(Value* values, int count) {
    for (int n = count; n > 1; --n) {
      const int other = Below(n);
      std::swap(values[n - 1], values[other]);
    }
  }

 private:
  std::uint64_t state_;
};

}  // namespace latchkey::sboxes
