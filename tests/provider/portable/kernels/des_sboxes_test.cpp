#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

#include "provider/portable/kernels/des_sboxes_gates.h"
#include "provider/portable/kernels/des_sboxes_ternary.h"
#include "provider/portable/kernels/des_tables.h"

namespace latchkey::provider::des {
namespace {

// Look-up tables of three inputs in plain operations.
struct PlainLogic {
  using Word = std::uint64_t;

  template <int table>
  static Word Ternary(Word a, Word b, Word c) noexcept {
    Word result = 0;
    for (unsigned row = 0; row < 8; ++row) {
      if ((table >> row & 1) == 0) continue;
      result |= ((row & 4) != 0 ? a : ~a) & ((row & 2) != 0 ? b : ~b) & ((row & 1) != 0 ? c : ~c);
    }
    return result;
  }
};

// Bit n: the given bit, from the first, of the six bits of n.
std::uint64_t InputWord(unsigned bit) {
  std::uint64_t word = 0;
  for (unsigned n = 0; n < 64; ++n) word |= std::uint64_t{n >> (5 - bit) & 1} << n;
  return word;
}

// All 64 inputs of the box at once, one in each position of the words.
template <class Circuits, unsigned box>
void ExpectTable() {
  constexpr std::integral_constant<unsigned, box> kBox;
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  std::uint64_t third = 0;
  std::uint64_t fourth = 0;
  Circuits::Sbox(kBox, InputWord(0), InputWord(1), InputWord(2), InputWord(3), InputWord(4),
                 InputWord(5), {first, second, third, fourth});
  for (unsigned n = 0; n < 64; ++n) {
    const std::uint64_t result =
        (first >> n & 1) << 3 | (second >> n & 1) << 2 | (third >> n & 1) << 1 | (fourth >> n & 1);
    EXPECT_EQ(result ^ Circuits::Complements(kBox), SboxOutput(box, n))
        << "S" << box + 1 << " of " << n;
  }
}

template <class Circuits>
void ExpectTables() {
  [&]<unsigned... box>(std::integer_sequence<unsigned, box...>) {
    (ExpectTable<Circuits, box>(), ...);
  }
  (std::make_integer_sequence<unsigned, 8>());
}

TEST(KernelDesSboxesTest, TheCircuitsOfGatesGiveTheTables) {
  ExpectTables<GateCircuits<std::uint64_t>>();
}

TEST(KernelDesSboxesTest, TheCircuitsOfLookUpTablesGiveTheTables) {
  ExpectTables<TernaryCircuits<PlainLogic>>();
}

// A permutation of 0 to 15. The known answers of DES test the order of the values.
TEST(KernelDesSboxesTest, EachRowOfATableIsAPermutation) {
  for (const auto& box : kSboxes) {
    for (unsigned row = 0; row < 4; ++row) {
      unsigned seen = 0;
      for (unsigned column = 0; column < 16; ++column) seen |= 1U << box[16 * row + column];
      EXPECT_EQ(seen, 0xFFFFU);
    }
  }
  EXPECT_EQ(SboxOutput(0, 0b011011), 5U);  // the example next to the published tables
}

}  // namespace
}  // namespace latchkey::provider::des
