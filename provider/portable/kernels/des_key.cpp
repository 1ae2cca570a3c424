// FIPS 46-3's key schedule. Both permuted choices process four bits at a time: a permutation is the
// sum of the results for each group of bits, which a table holds for the group's 16 values.
#include "provider/portable/kernels/des_key.h"

#include <algorithm>

#include "base/secure_memory.h"

namespace latchkey::provider::des {
namespace {

constexpr std::uint32_t kHalfMask = 0x0FFFFFFF;

// The tables from `width` bits, counted from 1 at the top, to the bits that `choice` names; result
// bit n of the choice is at bit place(n).
template <std::size_t groups, std::size_t count, class Place>
constexpr auto PermutationTables(const std::array<std::uint8_t, count>& choice, Place place) {
  std::array<std::array<std::uint64_t, 16>, groups> tables{};
  for (std::size_t n = 0; n < count; ++n) {
    const unsigned source = choice[n] - 1U;
    for (unsigned value = 0; value < 16; ++value) {
      if ((value >> (3 - source % 4) & 1) == 0) continue;
      tables[source / 4][value] |= std::uint64_t{1} << place(n);
    }
  }
  return tables;
}

// The two halves as one number of 56 bits.
constexpr auto kChoice1 = PermutationTables<16>(kPermutedChoice1, [](std::size_t n) {  //
  return 55 - n;
});

// RoundKey::odd above RoundKey::even.
constexpr auto kChoice2 = PermutationTables<14>(kPermutedChoice2, [](std::size_t n) {
  const std::size_t box = n / 6;
  return (box % 2 == 0 ? 32 : 0) + 24 - 8 * (box / 2) + 5 - n % 6;
});

template <std::size_t groups>
std::uint64_t Permuted(const std::array<std::array<std::uint64_t, 16>, groups>& tables,
                       std::uint64_t value) noexcept {
  std::uint64_t result = 0;
  for (std::size_t i = groups; i-- > 0; value >>= 4) result |= tables[i][value & 15];
  return result;
}

std::uint32_t TurnedLeft(std::uint32_t half, unsigned by) noexcept {
  return (half << by | half >> (28 - by)) & kHalfMask;
}

void ExpandKey(const std::uint8_t* key, RoundKey* rounds) noexcept {
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < kKeySize; ++i) bits = bits << 8 | key[i];
  const std::uint64_t chosen = Permuted(kChoice1, bits);
  auto left = static_cast<std::uint32_t>(chosen >> 28);
  auto right = static_cast<std::uint32_t>(chosen) & kHalfMask;
  for (std::size_t round = 0; round < kRounds; ++round) {
    left = TurnedLeft(left, kKeyShifts[round]);
    right = TurnedLeft(right, kKeyShifts[round]);
    const std::uint64_t both = Permuted(kChoice2, std::uint64_t{left} << 28 | right);
    rounds[round] = {static_cast<std::uint32_t>(both >> 32), static_cast<std::uint32_t>(both)};
  }
}

}  // namespace

void ExpandKeys(const std::uint8_t* keys, std::size_t passes, KeySchedule& schedule) noexcept {
  schedule.count = passes * kRounds;
  for (std::size_t pass = 0; pass < passes; ++pass) {
    RoundKey* const rounds = schedule.rounds.data() + pass * kRounds;
    ExpandKey(keys + pass * kKeySize, rounds);
    if (pass == 1) std::reverse(rounds, rounds + kRounds);
  }
}

}  // namespace latchkey::provider::des
