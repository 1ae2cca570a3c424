// Operations on words of several 64-bit lanes: vectors of the compiler's vector extension, of one
// or more parts of 128 bits. All functions are inlined into files that are compiled for one kind of
// CPU, and must not exist outside them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "provider/block_size.h"

namespace latchkey::provider::kernels {

// The word with the bytes of each lane reversed on a big-endian machine; unchanged on others.
template <class Word>
[[gnu::always_inline]] inline Word LowByteFirst(const Word& word) noexcept {
  if constexpr (std::endian::native == std::endian::little) return word;
  constexpr std::uint64_t kBytes = 0x00FF00FF00FF00FF;
  constexpr std::uint64_t kPairs = 0x0000FFFF0000FFFF;
  const Word pairs = (word >> 8 & kBytes) | (word & kBytes) << 8;
  const Word halves = (pairs >> 16 & kPairs) | (pairs & kPairs) << 16;
  return halves >> 32 | halves << 32;
}

// A block's first byte is the lowest of its lane, and a word's the lowest of its part, as the DES
// permutations and RC2's words expect.
template <class Word>
[[gnu::always_inline]] inline Word Load(const std::uint8_t* from) noexcept {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return LowByteFirst(word);
}

template <class Word>
[[gnu::always_inline]] inline void Store(std::uint8_t* to, const Word& word) noexcept {
  const Word bytes = LowByteFirst(word);
  std::memcpy(to, &bytes, sizeof bytes);
}

// A vector of the size of Word with other lanes. As a member, since GCC 12 ignores the attribute of
// an alias whose size depends on a template's argument.
template <class Word, class Lane>
struct Divided {
  // NOLINTNEXTLINE(modernize-use-using)
  typedef Lane Type __attribute__((vector_size(sizeof(Word))));
};

// `word` with every bit inverted if `mask` is -1, and unchanged if it is 0.
template <class Word>
[[gnu::always_inline]] inline Word AddMask(const Word& word, std::int32_t mask) noexcept {
  using Lanes = typename Divided<Word, std::uint32_t>::Type;
  return reinterpret_cast<Word>(reinterpret_cast<Lanes>(word) ^ static_cast<std::uint32_t>(mask));
}

// The place in memory of unit n of the `count` in a 64-bit lane, counted from the lowest.
template <std::size_t count>
constexpr std::size_t PlaceInLane(std::size_t n) {
  return std::endian::native == std::endian::little ? n : count - 1 - n;
}

// In each 64-bit lane, the bits whose position has the bit `distance` clear.
constexpr std::uint64_t LowPositions(unsigned distance) {
  std::uint64_t mask = 0;
  for (unsigned i = 0; i < 64; ++i) mask |= ((i & distance) == 0 ? std::uint64_t{1} : 0) << i;
  return mask;
}

// One step of the transposition of a bit matrix whose rows are words (the recursive method of
// Eklundh, 1972, with masks): for two rows whose numbers differ in the bit `distance`, exchanges
// the high positions of the lower row with the low positions of the higher one.
template <unsigned distance, class Word>
[[gnu::always_inline]] inline void ExchangeParts(Word& lower, Word& higher) noexcept {
  const Word changed = ((lower >> distance) ^ higher) & LowPositions(distance);
  higher ^= changed;
  lower ^= changed << distance;
}

// Takes units alternately from two words: from the first half of each 128-bit part, or from the
// second half if isSecond.
template <class Unit, bool isSecond, class Word>
[[gnu::always_inline]] inline Word Interleave(const Word& even, const Word& odd) noexcept {
  using Units = typename Divided<Word, Unit>::Type;
  constexpr std::size_t kPart = 16 / sizeof(Unit);
  constexpr std::size_t kUnits = sizeof(Word) / sizeof(Unit);
  return [&]<std::size_t... i>(std::index_sequence<i...>) __attribute__((always_inline)) {
    return reinterpret_cast<Word>(__builtin_shufflevector(
        reinterpret_cast<Units>(even), reinterpret_cast<Units>(odd),
        (i / kPart * kPart + (isSecond ? kPart / 2 : 0) + i % kPart / 2 + i % 2 * kUnits)...));
  }
  (std::make_index_sequence<kUnits>());
}

// For all pairs of `count` words whose numbers differ in `bit`: that bit becomes the lowest of the
// units' numbers in each 128-bit part, and their highest bit becomes that of the words' numbers.
template <class Unit, unsigned bit, unsigned count, class Word>
[[gnu::always_inline]] inline void TurnUnits(Word* words) noexcept {
#pragma GCC unroll 8
  for (unsigned i = 0; i < count; ++i) {
    if ((i & bit) != 0) continue;
    const Word first = Interleave<Unit, false>(words[i], words[i + bit]);
    words[i + bit] = Interleave<Unit, true>(words[i], words[i + bit]);
    words[i] = first;
  }
}

// CBC's last step for `count` words of consecutive blocks at `data`, which still holds the
// ciphertext: adds to each block the ciphertext before it and stores it there. Runs from the end to
// the beginning, so that no ciphertext is overwritten before its use. Reads the block before the
// first word from `before`, which may be that memory or a copy.
template <std::size_t count, class Word>
[[gnu::always_inline]] inline void StoreChained(std::uint8_t* data, const Word* words,
                                                const std::uint8_t* before) noexcept {
#pragma GCC unroll 8
  for (std::size_t n = 1; n < count; ++n) {
    std::uint8_t* const place = data + (count - n) * sizeof(Word);
    Store(place, words[count - n] ^ Load<Word>(place - kBlockSize));
  }
  std::uint8_t first[sizeof(Word)];
  std::memcpy(first, before, kBlockSize);
  std::memcpy(first + kBlockSize, data, sizeof first - kBlockSize);
  Store(data, words[0] ^ Load<Word>(first));
}

}  // namespace latchkey::provider::kernels
