// The method is that of the public-domain programs of the 1980s (R. Outerbridge): the permutation
// after the S-boxes is part of their tables, and both halves are kept rotated left by one bit, so
// that the expansion is only a rotation by four, with six bits in each byte. A table has 256
// entries, so that the two unused bits need no mask.
//
// In CBC encryption the initial permutation of a block and the final one of the block before it
// cancel: the chain is kept in permuted form, so that only the rounds are in the chain of dependent
// operations.
#include "provider/portable/kernels/des_table_cipher.h"

#include <bit>
#include <cstring>
#include <utility>

#include "provider/block_size.h"

namespace latchkey::provider::des {
namespace {

using Table = std::array<std::uint32_t, 256>;

consteval std::array<Table, 8> MakeTables() {
  std::array<Table, 8> tables{};
  for (unsigned box = 0; box < 8; ++box) {
    for (unsigned input = 0; input < 256; ++input) {
      const std::uint32_t output = SboxOutput(box, input & 63) << (28 - 4 * box);
      std::uint32_t permuted = 0;
      for (unsigned i = 0; i < 32; ++i)
        permuted |= (output >> (32 - kPermutation[i]) & 1) << (31 - i);
      tables[box][input] = std::rotl(permuted, 1);
    }
  }
  return tables;
}

constexpr std::array<Table, 8> kTables = MakeTables();

// A block after the initial permutation, both halves rotated left by one bit.
struct Halves {
  std::uint32_t left;
  std::uint32_t right;
};

std::uint32_t LoadWord(const std::uint8_t* from) noexcept {
  return std::uint32_t{from[0]} << 24 | std::uint32_t{from[1]} << 16 | std::uint32_t{from[2]} << 8 |
         from[3];
}

void StoreWord(std::uint8_t* to, std::uint32_t word) noexcept {
  for (unsigned i = 0; i < 4; ++i) to[i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
}

// Exchanges the bits of `high` that are `shift` above the mask with those of `low` under it.
void Exchange(std::uint32_t& high, std::uint32_t& low, unsigned shift,
              std::uint32_t mask) noexcept {
  const std::uint32_t difference = (high >> shift ^ low) & mask;
  low ^= difference;
  high ^= difference << shift;
}

// The initial permutation transposes the 8 by 8 matrix of bits and separates even from odd columns,
// in five exchanges of parts.
Halves Permuted(const std::uint8_t* block) noexcept {
  Halves h{LoadWord(block), LoadWord(block + 4)};
  Exchange(h.left, h.right, 4, 0x0F0F0F0F);
  Exchange(h.left, h.right, 16, 0x0000FFFF);
  Exchange(h.right, h.left, 2, 0x33333333);
  Exchange(h.right, h.left, 8, 0x00FF00FF);
  Exchange(h.left, h.right, 1, 0x55555555);
  return {std::rotl(h.left, 1), std::rotl(h.right, 1)};
}

// The final permutation of a block whose halves the last round has exchanged.
void StorePermuted(Halves state, std::uint8_t* block) noexcept {
  Halves h{std::rotr(state.left, 1), std::rotr(state.right, 1)};
  Exchange(h.left, h.right, 1, 0x55555555);
  Exchange(h.right, h.left, 8, 0x00FF00FF);
  Exchange(h.right, h.left, 2, 0x33333333);
  Exchange(h.left, h.right, 16, 0x0000FFFF);
  Exchange(h.left, h.right, 4, 0x0F0F0F0F);
  StoreWord(block, h.left);
  StoreWord(block + 4, h.right);
}

std::uint32_t Found(const Table& table, std::uint32_t value, unsigned shift) noexcept {
  return table[value >> shift & 0xFF];
}

// Keeps a partial sum in the written order: the compiler would make one long chain of all terms.
[[gnu::always_inline]] inline std::uint32_t Kept(std::uint32_t sum) noexcept {
  asm("" : "+r"(sum));
  return sum;
}

// The index into the tables: a half combined with the round's key.
struct Inputs {
  std::uint32_t even;
  std::uint32_t odd;
};

[[gnu::always_inline]] inline Inputs InputsOf(std::uint32_t half, const RoundKey& key) noexcept {
  return {half ^ key.even, std::rotr(half, 4) ^ key.odd};
}

// One round: adds the round function of `in` to `half`. With a key, `in` becomes the next round's.
// The key and the half are added to the earlier terms, so that only one operation separates the
// later look-ups, those of `odd`, from each of the results.
[[gnu::always_inline]] inline void RunRound(std::uint32_t& half, Inputs& in,
                                            const RoundKey* nextKey) noexcept {
  const std::uint32_t early = Kept(Found(kTables[1], in.even, 24) ^ Found(kTables[5], in.even, 8)) ^
                              Kept(Found(kTables[3], in.even, 16) ^ Found(kTables[7], in.even, 0));
  const std::uint32_t late =
      Kept(Kept(Found(kTables[0], in.odd, 24) ^ Found(kTables[4], in.odd, 8)) ^
           Kept(Found(kTables[2], in.odd, 16) ^ Found(kTables[6], in.odd, 0)));
  if (nextKey != nullptr) {
    in.even = Kept(half ^ nextKey->even ^ early) ^ late;
    in.odd = std::rotr(Kept(half ^ std::rotl(nextKey->odd, 4) ^ early) ^ late, 4);
  }
  half = Kept(half ^ early) ^ late;
}

// Sixteen rounds and the exchange of the halves after them; `key` advances by `step`.
template <std::ptrdiff_t step>
[[gnu::always_inline]] inline void RunPass(Halves& state, const RoundKey*& key) noexcept {
  Inputs in = InputsOf(state.right, *key);
#pragma GCC unroll 8
  for (std::size_t round = 0; round < kRounds; round += 2) {
    RunRound(state.left, in, key + step);
    RunRound(state.right, in, round + 2 < kRounds ? key + 2 * step : nullptr);
    key += 2 * step;
  }
  std::swap(state.left, state.right);
}

void Encrypt(const KeySchedule& keys, Halves& state) noexcept {
  const RoundKey* key = keys.rounds.data();
  for (std::size_t left = keys.count; left > 0; left -= kRounds) RunPass<1>(state, key);
}

void Decrypt(const KeySchedule& keys, Halves& state) noexcept {
  const RoundKey* key = keys.rounds.data() + keys.count - 1;
  for (std::size_t left = keys.count; left > 0; left -= kRounds) RunPass<-1>(state, key);
}

void AddBlock(std::uint8_t* block, const std::uint8_t* other) noexcept {
  for (std::size_t i = 0; i < kBlockSize; ++i) block[i] ^= other[i];
}

}  // namespace

void EncryptCbc(const KeySchedule& keys, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept {
  if (length == 0) return;
  Halves chain = Permuted(feedback);
  for (std::uint8_t* const end = data + length; data != end; data += kBlockSize) {
    const Halves block = Permuted(data);
    chain = {chain.left ^ block.left, chain.right ^ block.right};
    Encrypt(keys, chain);
    StorePermuted(chain, data);
  }
  std::memcpy(feedback, data - kBlockSize, kBlockSize);
}

void DecryptCbc(const KeySchedule& keys, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept {
  for (std::uint8_t* const end = data + length; data != end; data += kBlockSize) {
    std::uint8_t ciphertext[kBlockSize];
    std::memcpy(ciphertext, data, sizeof ciphertext);
    Halves state = Permuted(data);
    Decrypt(keys, state);
    StorePermuted(state, data);
    AddBlock(data, feedback);
    std::memcpy(feedback, ciphertext, sizeof ciphertext);
  }
}

}  // namespace latchkey::provider::des
