// Operations on words of several 64-bit lanes: a plain std::uint64_t (one lane) or a vector of the
// compiler's vector extension. All functions are inlined into files that are compiled for one kind
// of CPU, and must not exist outside them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "provider/block_size.h"

namespace latchkey::provider::kernels {

// The word with the bytes of each lane in the other order, on machines whose order is big-endian.
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

// `word` with every bit inverted if `mask` is -1, and unchanged if it is 0.
[[gnu::always_inline]] inline std::uint64_t AddMask(std::uint64_t word,
                                                    std::int32_t mask) noexcept {
  return word ^ static_cast<std::uint64_t>(std::int64_t{mask});
}

// A vector of 32-bit lanes of the size of Word. As a member, since GCC 12 ignores the attribute of
// an alias whose size depends on a template's argument.
template <class Word>
struct Halves {
  // NOLINTNEXTLINE(modernize-use-using)
  typedef std::uint32_t Type __attribute__((vector_size(sizeof(Word))));
};

template <class Word>
[[gnu::always_inline]] inline Word AddMask(const Word& word, std::int32_t mask) noexcept {
  using Lanes = typename Halves<Word>::Type;
  return reinterpret_cast<Word>(reinterpret_cast<Lanes>(word) ^ static_cast<std::uint32_t>(mask));
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
  constexpr std::uint64_t kLow = LowPositions(distance);
  const Word moved = (lower & kLow) | ((higher & kLow) << distance);
  higher = ((lower >> distance) & kLow) | (higher & ~kLow);
  lower = moved;
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
