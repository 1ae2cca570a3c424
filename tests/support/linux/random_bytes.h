// Bytes and numbers for tests that try many inputs: the same in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

#include "tests/support/bytes.h"

namespace latchkey::test {

class RandomSource {
 public:
  explicit RandomSource(std::uint32_t seed) : engine_(seed) {}

  // 0 to `limit` - 1.
  [[nodiscard]] std::size_t Below(std::size_t limit) { return engine_() % limit; }

  [[nodiscard]] Bytes Some(std::size_t size) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(engine_());
    return bytes;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace latchkey::test
