// RC2 (RFC 2268, sections 3 and 4) with a block in each 16-bit lane of a vector: CBC decryption,
// and encryption of independent blocks. Four vectors hold the four words of each block, and every
// operation of the cipher works on all lanes.
// Two such groups are interleaved, since each step waits for the one before.
//
// Vector has the types and the look-up of a key word for each lane. For use in one file for each
// kind of CPU (rc2_lanes_*.cpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>

#include "base/stack_wipe.h"
#include "provider/block_size.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "provider/portable/kernels/vector_words.h"

namespace latchkey::provider {

// The types and operations that vectors of this size share on every kind of CPU.
template <int kBytes>
struct Rc2Vectors {
  using Word [[gnu::vector_size(kBytes)]] = std::uint64_t;
  using Lanes [[gnu::vector_size(kBytes)]] = std::uint16_t;

  static constexpr std::size_t kGroups = 2;

  // In each bit: `one` if `which` is set, otherwise `zero`.
  [[gnu::always_inline]] static Lanes Choose(Lanes which, Lanes one, Lanes zero) noexcept {
    return zero ^ (which & (one ^ zero));
  }
};

template <class Vector>
class Rc2Lanes {
  using Word = typename Vector::Word;    // 64-bit lanes, one block each
  using Lanes = typename Vector::Lanes;  // the same size with 16-bit lanes

 public:
  static constexpr std::size_t kGroups = Vector::kGroups;
  static constexpr std::size_t kBatchBytes = kGroups * 4 * sizeof(Word);
  static constexpr std::size_t kLanes = kBatchBytes / kBlockSize;
  static_assert(kLanes <= kMostLanes);

  // Decrypts batches in place. `feedback` is the ciphertext block before the data, and becomes its
  // last ciphertext block. Leaves no data on the stack.
  static void Decrypt(const Rc2Key& key, std::uint8_t* data, std::size_t batches,
                      std::uint8_t* feedback) noexcept {
    Run(key, data, batches, feedback);
    WipeStackBelowBatches();
  }

  // Encrypts each block that the source gives, kLanes at a time. Leaves no data on the stack.
  static void Encrypt(const Rc2Key& key, const BlockSource& source) noexcept {
    RunLanes(key, source);
    WipeStackBelowBatches();
  }

 private:
  static constexpr unsigned kTurns[4] = {1, 2, 3, 5};
  static constexpr std::size_t kKeyWords = std::tuple_size_v<decltype(Rc2Key::words)>;

  // The key's words in all lanes, and as the table of the mashing rounds.
  struct Keys {
    explicit Keys(const Rc2Key& key) noexcept : table(key.words.data()) {
      for (std::size_t i = 0; i < kKeyWords; ++i) spread[i] = Lanes{} + key.words[i];
    }

    Lanes spread[kKeyWords];
    typename Vector::Table table;
  };

  // The words 0 to 3 of the blocks of each group.
  struct State {
    Lanes r[4][kGroups];
  };

  // The places of the words 0 to 3 after TransposeIn.
  static constexpr std::size_t kPlaces[4] = {kernels::PlaceInLane<4>(0), kernels::PlaceInLane<4>(2),
                                             kernels::PlaceInLane<4>(1),
                                             kernels::PlaceInLane<4>(3)};

  // Converts four vectors of blocks to four vectors of the same word of each block. Which lane a
  // block gets does not matter: as in des_bitslice.h, units move by interleaving.
  static void TransposeIn(Word* rows) noexcept {
    kernels::TurnUnits<std::uint16_t, 2, 4>(rows);
    kernels::TurnUnits<std::uint16_t, 1, 4>(rows);
    kernels::TurnUnits<std::uint16_t, 2, 4>(rows);
  }

  // The inverse.
  static void TransposeOut(Word* rows) noexcept {
    kernels::TurnUnits<std::uint16_t, 1, 4>(rows);
    kernels::TurnUnits<std::uint16_t, 2, 4>(rows);
    std::swap(rows[1], rows[2]);
  }

  // The value that a step adds to word i, besides the key.
  template <unsigned i>
  [[gnu::always_inline]] static Lanes ChosenFor(const State& state, std::size_t g) noexcept {
    return Vector::Choose(state.r[(i + 3) % 4][g], state.r[(i + 2) % 4][g],
                          state.r[(i + 1) % 4][g]);
  }

  template <unsigned i>
  static void MixWord(State& state, const Lanes& key) noexcept {
#pragma GCC unroll 4
    for (std::size_t g = 0; g < kGroups; ++g) {
      Lanes& word = state.r[i][g];
      const Lanes sum = word + ChosenFor<i>(state, g) + key;
      word = (sum << kTurns[i]) | (sum >> (16 - kTurns[i]));
    }
  }

  static void Mix(State& state, const Lanes* key) noexcept {
    MixWord<0>(state, key[0]);
    MixWord<1>(state, key[1]);
    MixWord<2>(state, key[2]);
    MixWord<3>(state, key[3]);
  }

  static void Mash(State& state, const typename Vector::Table& table) noexcept {
#pragma GCC unroll 4
    for (std::size_t n = 0; n < 4; ++n) {
      Lanes words[kGroups];
      table.WordsAt(state.r[(n + 3) % 4], words);
#pragma GCC unroll 4
      for (std::size_t g = 0; g < kGroups; ++g) state.r[n][g] += words[g];
    }
  }

  // Sixteen mixing rounds; the mashing rounds follow the fifth and the eleventh.
  static void EncryptState(const Keys& keys, State& state) noexcept {
    const Lanes* words = keys.spread;
    bool isFirst = true;
    for (const unsigned rounds : {5U, 6U, 5U}) {
      if (!isFirst) Mash(state, keys.table);
      isFirst = false;
      for (unsigned i = 0; i < rounds; ++i, words += 4) Mix(state, words);
    }
  }

  template <unsigned i>
  static void UnmixWord(State& state, const Lanes& key) noexcept {
#pragma GCC unroll 4
    for (std::size_t g = 0; g < kGroups; ++g) {
      Lanes& word = state.r[i][g];
      word = ((word >> kTurns[i]) | (word << (16 - kTurns[i]))) - key - ChosenFor<i>(state, g);
    }
  }

  static void Unmix(State& state, const Lanes* key) noexcept {
    UnmixWord<3>(state, key[3]);
    UnmixWord<2>(state, key[2]);
    UnmixWord<1>(state, key[1]);
    UnmixWord<0>(state, key[0]);
  }

  static void Unmash(State& state, const typename Vector::Table& table) noexcept {
#pragma GCC unroll 4
    for (std::size_t n = 0; n < 4; ++n) {
      Lanes words[kGroups];
      table.WordsAt(state.r[(6 - n) % 4], words);
#pragma GCC unroll 4
      for (std::size_t g = 0; g < kGroups; ++g) state.r[3 - n][g] -= words[g];
    }
  }

  // Sixteen mixing rounds backwards; the mashing rounds follow the fifth and the eleventh.
  static void DecryptState(const Keys& keys, State& state) noexcept {
    const Lanes* words = keys.spread + kKeyWords;
    bool isFirst = true;
    for (const unsigned rounds : {5U, 6U, 5U}) {
      if (!isFirst) Unmash(state, keys.table);
      isFirst = false;
      for (unsigned i = 0; i < rounds; ++i) Unmix(state, words -= 4);
    }
  }

  // The words of the data's blocks.
  static void LoadState(const std::uint8_t* data, State& state) noexcept {
    Word rows[4 * kGroups];
    for (std::size_t n = 0; n < 4 * kGroups; ++n) {
      rows[n] = kernels::Load<Word>(data + n * sizeof(Word));
    }
    for (std::size_t g = 0; g < kGroups; ++g) {
      TransposeIn(rows + 4 * g);
      for (std::size_t i = 0; i < 4; ++i) {
        state.r[i][g] = reinterpret_cast<Lanes>(rows[4 * g + kPlaces[i]]);
      }
    }
  }

  // Converts the state back to rows of blocks.
  static void TransposeOut(const State& state, Word* rows) noexcept {
    for (std::size_t g = 0; g < kGroups; ++g) {
      for (std::size_t i = 0; i < 4; ++i) {
        rows[4 * g + kPlaces[i]] = reinterpret_cast<Word>(state.r[i][g]);
      }
      TransposeOut(rows + 4 * g);
    }
  }

  [[gnu::flatten]] static void DecryptBatch(const Keys& keys, std::uint8_t* data,
                                            const std::uint8_t* feedback) noexcept {
    State state;
    Word rows[4 * kGroups];
    LoadState(data, state);
    DecryptState(keys, state);
    TransposeOut(state, rows);
    kernels::StoreChained<4 * kGroups>(data, rows, feedback);
  }

  [[gnu::flatten]] static void EncryptBatch(const Keys& keys, std::uint8_t* data) noexcept {
    State state;
    Word rows[4 * kGroups];
    LoadState(data, state);
    EncryptState(keys, state);
    TransposeOut(state, rows);
    for (std::size_t n = 0; n < 4 * kGroups; ++n) {
      kernels::Store(data + n * sizeof(Word), rows[n]);
    }
  }

  // Not inlined into the caller's frame, so that table and blocks are below that and can be wiped.
  [[gnu::noinline]] static void Run(const Rc2Key& key, std::uint8_t* data, std::size_t batches,
                                    std::uint8_t* feedback) noexcept {
    const Keys keys(key);
    for (; batches > 0; --batches, data += kBatchBytes) {
      std::uint8_t next[kBlockSize];
      std::memcpy(next, data + kBatchBytes - sizeof next, sizeof next);
      DecryptBatch(keys, data, feedback);
      std::memcpy(feedback, next, sizeof next);
    }
  }

  [[gnu::noinline]] static void RunLanes(const Rc2Key& key, const BlockSource& source) noexcept {
    const Keys keys(key);
    while (std::uint8_t* const blocks = source.next(source.context)) EncryptBatch(keys, blocks);
  }
};

}  // namespace latchkey::provider
