// DES and 3DES, bitsliced: CBC decryption, and encryption of independent blocks. After E. Biham, "A
// Fast New DES Implementation in Software" (1997). Word n of 64 words holds bit n of many blocks,
// one block for each bit of a word. The cipher is then a circuit of bitwise operations on all these
// blocks at once, and its permutations only choose words. No memory is addressed by a secret.
//
// Word is a vector of 64-bit lanes; Circuits are the S-boxes. For use in one file for
// each kind of CPU (des_bitslice_*.cpp).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/secure_memory.h"
#include "base/stack_wipe.h"
#include "provider/block_size.h"
#include "provider/portable/kernels/des_key.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "provider/portable/kernels/vector_words.h"

namespace latchkey::provider::des {

template <class Word, class Circuits>
class Bitslice {
 public:
  static constexpr std::size_t kBatchBytes = 64 * sizeof(Word);
  static constexpr std::size_t kLanes = kBatchBytes / kBlockSize;
  static_assert(kLanes <= kMostLanes);

  // Decrypts batches in place. `feedback` is the ciphertext block before the data, and becomes the
  // last one of it. Leaves nothing on the stack: its frame is far larger than what callers wipe.
  static void Decrypt(const KeySchedule& keys, std::uint8_t* data, std::size_t batches,
                      std::uint8_t* feedback) noexcept {
    Bitslice work;
    const WipeAtExit wipeWork(work);
    work.Run(keys, data, batches, feedback);
    WipeStackBelowBatches();
  }

  // Encrypts each block that the source gives, kLanes at a time. Leaves nothing on the stack.
  static void Encrypt(const KeySchedule& keys, const BlockSource& source) noexcept {
    Bitslice work;
    const WipeAtExit wipeWork(work);
    work.RunLanes(keys, source);
    WipeStackBelowBatches();
  }

 private:
  static constexpr std::size_t kRoundBits = 48;

  // A bit of the key as 0 or -1, of half the size of a lane, since keys take most of the memory.
  using KeyMask = std::int32_t;

  // The halves of the block stay in the places of the initial permutation. Each round changes one
  // of them in place; alternating between them replaces the exchange of the halves.
  enum Half : unsigned { Left = 0, Right = 32 };

  // The place of bit n (from 0) of the permuted block, as a bit of a block read as a 64-bit number
  // with its first byte lowest.
  static constexpr std::size_t PlaceOf(std::size_t n) {
    const unsigned bit = kInitialPermutation[n] - 1U;
    return bit / 8 * 8 + 7 - bit % 8;
  }

  // The bit (from 0) of the round function that is bit n of the S-boxes' outputs.
  static constexpr std::size_t PermutedBit(std::size_t n) {
    std::size_t i = 0;
    while (kPermutation[i] != n + 1) ++i;
    return i;
  }

  // 1 if the circuits compute the complement of bit n (from 0) of the round function.
  template <std::size_t n>
  static constexpr std::uint32_t IsComplement() {
    constexpr unsigned kOutput = kPermutation[n] - 1U;
    constexpr std::integral_constant<unsigned, kOutput / 4> kBox;
    return Circuits::Complements(kBox) >> (3 - kOutput % 4) & 1;
  }

  // Two complements cancel, so each half is right after every fourth round. In between, the bits of
  // the key compensate.
  static constexpr bool ReadsComplements(std::size_t round) {
    return round % 4 == 1 || round % 4 == 2;
  }

  template <unsigned box, unsigned bit>
  [[gnu::always_inline]] static KeyMask KeyBit(const RoundKey& key, std::size_t round) noexcept {
    const std::uint32_t word = box % 2 == 0 ? key.odd : key.even;
    const std::uint32_t change =
        ReadsComplements(round) ? IsComplement<(4 * box + bit + 31) % 32>() : 0;
    return -static_cast<KeyMask>((word >> (24 - box / 2 * 8 + 5 - bit) ^ change) & 1);
  }

  enum class Order { Encryption, Decryption };

  template <Order order>
  void SpreadKeys(const KeySchedule& keys) noexcept {
    rounds_ = keys.count;
    for (std::size_t round = 0; round < rounds_; ++round) {
      const RoundKey& key = keys.rounds[order == Order::Encryption ? round : rounds_ - 1 - round];
      [&]<std::size_t... i>(std::index_sequence<i...>) {
        ((keys_[round][i] = KeyBit<i / 6, i % 6>(key, round)), ...);
      }
      (std::make_index_sequence<kRoundBits>());
    }
  }

  template <unsigned bit>
  [[gnu::always_inline]] static void TurnRows(Word* rows) noexcept {
    kernels::TurnUnits<std::uint8_t, bit, 8>(rows);
  }

  // Transposes eight rows' bits in each column of bytes.
  [[gnu::always_inline]] static void TransposeBits(Word* rows) noexcept {
#pragma GCC unroll 4
    for (unsigned i = 0; i < 4; ++i) kernels::ExchangeParts<4>(rows[i], rows[i + 4]);
#pragma GCC unroll 8
    for (unsigned i = 0; i < 8; ++i) {
      if ((i & 2) == 0) kernels::ExchangeParts<2>(rows[i], rows[i + 2]);
    }
#pragma GCC unroll 8
    for (unsigned i = 0; i < 8; i += 2) kernels::ExchangeParts<1>(rows[i], rows[i + 1]);
  }

  // The number (b2 b1 b0) whose bits are those of row n (b0 b2 b1) after three or four steps.
  static constexpr std::size_t NumberIn(std::size_t n) { return n % 4 * 2 + n / 4; }

  // The number (j) of the byte that is in row n after TransposeIn's first part.
  static constexpr std::size_t ByteOf(std::size_t n) {
    return kernels::PlaceInLane<8>(NumberIn(n));
  }

  // Row n of the data is a word of consecutive blocks. Word n gets bit n of each block. Which place
  // in the words a block gets does not matter, so bytes move by interleaving: of the numbers of
  // rows (k) and bytes (j, in one half h of 128 bits), k2 k1 k0 and h j2 j1 j0 become h k1 k0 and
  // j2 j1 j0 k2, then h j2 k0 and j1 j0 k2 k1, and so on, until only j is in the rows' numbers.
  void TransposeIn(const std::uint8_t* data) noexcept {
    for (std::size_t i = 0; i < 8; ++i) {
      Word rows[8];
      for (std::size_t k = 0; k < 8; ++k) {
        rows[k] = kernels::Load<Word>(data + (8 * k + i) * sizeof(Word));
      }
      TurnRows<4>(rows);
      TurnRows<2>(rows);
      TurnRows<1>(rows);
      TurnRows<4>(rows);
      for (std::size_t k = 0; k < 8; ++k) bits_[8 * ByteOf(k) + i] = rows[k];
    }
    for (std::size_t i = 0; i < 64; i += 8) TransposeBits(bits_ + i);
  }

  // The inverse of TransposeIn; three steps restore the bytes' order. Calls store(place, rows) for
  // the data's rows from the last eight to the first, with the offset of their place in the data.
  // The final permutation reads the halves in exchanged order. Each pair of words holds one bit of
  // both halves, hence the exclusive or with 1.
  template <class Store>
  [[gnu::always_inline]] void TransposeOut(Store&& store) noexcept {
    for (std::size_t i = 0; i < 8; ++i) {
      Word rows[8];
      for (std::size_t k = 0; k < 8; ++k) rows[k] = bits_[(8 * ByteOf(k) + i) ^ 1];
      TurnRows<2>(rows);
      TurnRows<1>(rows);
      TurnRows<4>(rows);
      for (std::size_t k = 0; k < 8; ++k) bits_[(8 * NumberIn(k) + i) ^ 1] = rows[k];
    }
    for (std::size_t i = 64; i > 0;) {
      i -= 8;
      Word rows[8];
      for (std::size_t k = 0; k < 8; ++k) rows[k] = bits_[(i + k) ^ 1];
      TransposeBits(rows);
      store(i * sizeof(Word), rows);
    }
  }

  template <unsigned box, Half to>
  [[gnu::always_inline]] void RunBox(const KeyMask* key) noexcept {
    // Without this, the compiler keeps words for later boxes in registers, and spills them to the
    // stack.
    asm volatile("" ::: "memory");
    constexpr Half kFrom = to == Left ? Right : Left;
    const auto input = [&]<unsigned bit>() __attribute__((always_inline)) {
      constexpr std::size_t kPlace = PlaceOf(kFrom + (4 * box + bit + 31) % 32);
      return kernels::AddMask(bits_[kPlace], key[std::size_t{6} * box + bit]);
    };
    const auto output = [&]<unsigned bit>() __attribute__((always_inline))->Word& {
      constexpr std::size_t kPlace = PlaceOf(to + PermutedBit(4 * box + bit));
      return bits_[kPlace];
    };
    Circuits::Sbox(std::integral_constant<unsigned, box>(), input.template operator()<0>(),
                   input.template operator()<1>(), input.template operator()<2>(),
                   input.template operator()<3>(), input.template operator()<4>(),
                   input.template operator()<5>(),
                   {output.template operator()<0>(), output.template operator()<1>(),
                    output.template operator()<2>(), output.template operator()<3>()});
  }

  template <Half to>
  [[gnu::always_inline]] void RunRound(const KeyMask* key) noexcept {
    [&]<unsigned... box>(std::integer_sequence<unsigned, box...>) __attribute__((always_inline)) {
      (RunBox<box, to>(key), ...);
    }
    (std::make_integer_sequence<unsigned, 8>());
  }

  // 16 rounds. The caller's choice of the next first half is the exchange after them.
  template <Half first>
  [[gnu::flatten]] void RunPass(std::size_t firstRound) noexcept {
    for (std::size_t round = firstRound; round < firstRound + kRounds; round += 2) {
      RunRound<first>(keys_[round].data());
      RunRound<first == Left ? Right : Left>(keys_[round + 1].data());
    }
  }

  void RunPasses() noexcept {
    RunPass<Left>(0);
    if (rounds_ > kRounds) {
      RunPass<Right>(kRounds);
      RunPass<Left>(2 * kRounds);
    }
  }

  void DecryptBatch(std::uint8_t* data, const std::uint8_t* feedback) noexcept {
    TransposeIn(data);
    RunPasses();
    TransposeOut([=](std::size_t at, const Word* rows) __attribute__((always_inline)) {
      std::uint8_t* const place = data + at;
      kernels::StoreChained<8>(place, rows, at == 0 ? feedback : place - kBlockSize);
    });
  }

  void EncryptBatch(std::uint8_t* data) noexcept {
    TransposeIn(data);
    RunPasses();
    TransposeOut([=](std::size_t at, const Word* rows) __attribute__((always_inline)) {
      for (std::size_t k = 0; k < 8; ++k) kernels::Store(data + at + k * sizeof(Word), rows[k]);
    });
  }

  // Not inlined into the caller's frame, so that its spilled data is below that and can be wiped.
  [[gnu::noinline]] void Run(const KeySchedule& keys, std::uint8_t* data, std::size_t batches,
                             std::uint8_t* feedback) noexcept {
    SpreadKeys<Order::Decryption>(keys);
    for (; batches > 0; --batches, data += kBatchBytes) {
      std::uint8_t next[kBlockSize];
      std::memcpy(next, data + kBatchBytes - sizeof next, sizeof next);
      DecryptBatch(data, feedback);
      std::memcpy(feedback, next, sizeof next);
    }
  }

  [[gnu::noinline]] void RunLanes(const KeySchedule& keys, const BlockSource& source) noexcept {
    SpreadKeys<Order::Encryption>(keys);
    while (std::uint8_t* const blocks = source.next(source.context)) EncryptBatch(blocks);
  }

  Word bits_[64];
  std::array<KeyMask, kRoundBits> keys_[3 * kRounds];
  std::size_t rounds_;
};

}  // namespace latchkey::provider::des
