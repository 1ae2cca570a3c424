// Bytes and numbers for tests that try many inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

#include "tests/support/bytes.h"
#include "tests/support/test_seed.h"

namespace latchkey::test {

class RandomSource {
 public:
  // Each number gives a different sequence, which also depends on the seed of the process
  // (test_seed.h).
  explicit RandomSource(std::uint32_t number) : engine_(ProcessSeed() + number) {}

  // 0 to `limit` - 1.
  [[nodiscard]] std::size_t Below(std::size_t limit) {
    return static_cast<std::size_t>(engine_() % limit);
  }

  [[nodiscard]] Bytes Some(std::size_t size) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(engine_());
    return bytes;
  }

 private:
  static std::uint64_t ProcessSeed() {
    static const std::uint64_t seed = TestSeed();
    return seed;
  }

  std::mt19937_64 engine_;
};

}  // namespace latchkey::test
