#include "crypto/random_number.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "crypto/crypto_state.h"
#include "crypto/seed/seed_text.h"
#include "crypto/value_text.h"

namespace latchkey {
namespace {

using GeneratorState = std::array<std::uint64_t, 2>;

// The finalizer of SplitMix64 (Steele, Lea, Flood: "Fast splittable pseudorandom number
// generators", 2014): every input bit affects every output bit.
constexpr std::uint64_t Mix(std::uint64_t value) {
  value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
  value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
  return value ^ (value >> 31U);
}

void Reseed(GeneratorState& state, double seed) {
  std::array<std::uint8_t, sizeof(GeneratorState)> bytes{};
  const WipeAtExit wipeBytes(bytes);
  if (!ThisThread().services.fillRandom(bytes)) throw Fault(FaultNumber::InvalidProcedureCall);
  auto entropy = std::bit_cast<GeneratorState>(bytes);
  const WipeAtExit wipeEntropy(entropy);
  state[0] = Mix(state[0] ^ entropy[0] ^ std::bit_cast<std::uint64_t>(seed));
  state[1] = Mix(state[1] ^ entropy[1] ^ state[0]);
}

// The next number in [0, 1), one that a Single can hold exactly. The generator is xoroshiro128+
// (Blackman, Vigna: "Scrambled linear pseudorandom number generators", 2021).
float NextUniform(GeneratorState& state) {
  constexpr int kSingleBits = 24;
  const std::uint64_t sum = state[0] + state[1];
  const std::uint64_t crossed = state[0] ^ state[1];
  state[0] = std::rotl(state[0], 24) ^ crossed ^ (crossed << 16U);
  state[1] = std::rotl(crossed, 37);
  return std::ldexp(static_cast<float>(sum >> (64 - kSingleBits)), -kSingleBits);
}

}  // namespace

float RandomNumberInRange(float sngLow, float sngHigh) {
  Text seedText = BuildSeedText();
  const WipeAtExit wipeSeed(seedText);
  GeneratorState& state = ThisThreadCrypto().generatorState;
  Reseed(state, NumberIn(seedText));
  const double uniform = NextUniform(state);
  const double range = double{sngHigh} - double{sngLow} + 1.0;
  return static_cast<float>(std::floor(range * uniform + double{sngLow}));
}

}  // namespace latchkey
