// The random choices of a test program. They are the same in each run, so that a test that passed
// passes again.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace latchkey::test {

// LATCHKEY_TEST_SEED, or a fixed number; printed for a failure to be repeated.
inline std::uint64_t TestSeed() {
  const char* const given = std::getenv("LATCHKEY_TEST_SEED");
  const std::uint64_t seed = given == nullptr ? 20260117U : std::strtoull(given, nullptr, 10);
  std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
  return seed;
}

// The engine of the process. For one thread.
inline std::mt19937_64& SeededEngine() {
  static std::mt19937_64 engine{TestSeed()};
  return engine;
}

}  // namespace latchkey::test
