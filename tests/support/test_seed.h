// The seed of a test's random choices. It is the same in each run, so that results repeat, unless
// the test requests a fresh one.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace latchkey::test {

// LATCHKEY_TEST_SEED, or `otherwise` if it is not set. Printed, so that a failure can be repeated.
inline std::uint64_t TestSeed(std::uint64_t otherwise = 20260117U) {
  const char* const given = std::getenv("LATCHKEY_TEST_SEED");
  const std::uint64_t seed = given == nullptr ? otherwise : std::strtoull(given, nullptr, 10);
  std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
  return seed;
}

// An engine with the seed, truncated to the type of the engine's seed.
template <class Engine>
Engine Seeded(std::uint64_t seed = TestSeed()) {
  return Engine{static_cast<typename Engine::result_type>(seed)};
}

// The engine of the process. For one thread.
inline std::mt19937_64& SeededEngine() {
  static auto engine = Seeded<std::mt19937_64>();
  return engine;
}

}  // namespace latchkey::test
