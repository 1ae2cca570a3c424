// Random choices that a seed repeats, the same on every target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace latchkey::test {

// The generator is the standard's, whose numbers are fixed. The standard's distributions, which
// differ between libraries, are not used.
class RandomSource {
 public:
  // Every pair has its own sequence.
  RandomSource(std::uint64_t seed, std::uint64_t sequence)
      : engine_(seed * 0x9E3779B97F4A7C15U + sequence) {}

  // From 0 to bound - 1.
  std::uint64_t Below(std::uint64_t bound) { return engine_() % bound; }

  // Both ends included.
  std::int32_t Between(std::int32_t least, std::int32_t most) {
    const auto width = static_cast<std::uint64_t>(std::int64_t{most} - least + 1);
    return static_cast<std::int32_t>(least + static_cast<std::int64_t>(Below(width)));
  }

  bool OneIn(std::uint64_t n) { return Below(n) == 0; }
  bool Flag() { return OneIn(2); }

  template <class Value, std::size_t count>
  const Value& Of(std::span<const Value, count> values) {
    return values[static_cast<std::size_t>(Below(values.size()))];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace latchkey::test
