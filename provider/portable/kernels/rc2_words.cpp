// RFC 2268, sections 3 and 4, unrolled. The chain from one word to the next limits the speed of
// encryption, so the newest word is used in only one bitwise operation, the sum and the rotation.
#include "provider/portable/kernels/rc2_words.h"

#include <array>
#include <bit>
#include <cstring>

#include "provider/block_size.h"

namespace latchkey::provider::rc2 {
namespace {

using Word = std::uint16_t;
using State = std::array<Word, 4>;

constexpr int kTurns[4] = {1, 2, 3, 5};

template <unsigned i>
[[gnu::always_inline]] inline void MixWord(State& r, Word key) noexcept {
  const Word last = r[(i + 3) % 4];
  const auto early = static_cast<Word>(r[i] + key);
  const auto chosen = static_cast<Word>((r[(i + 2) % 4] & last) + (r[(i + 1) % 4] & ~last));
  r[i] = std::rotl(static_cast<Word>(early + chosen), kTurns[i]);
}

template <unsigned i>
[[gnu::always_inline]] inline void UnmixWord(State& r, Word key) noexcept {
  const Word last = r[(i + 3) % 4];
  const auto chosen = static_cast<Word>((r[(i + 2) % 4] & last) + (r[(i + 1) % 4] & ~last));
  r[i] = static_cast<Word>(std::rotr(r[i], kTurns[i]) - key - chosen);
}

void Mash(State& r, const Word* key) noexcept {
  for (std::size_t i = 0; i < 4; ++i) r[i] = static_cast<Word>(r[i] + key[r[(i + 3) % 4] & 63]);
}

void Unmash(State& r, const Word* key) noexcept {
  for (std::size_t i = 4; i-- > 0;) r[i] = static_cast<Word>(r[i] - key[r[(i + 3) % 4] & 63]);
}

template <unsigned rounds>
[[gnu::always_inline]] inline void Mix(State& r, const Word* key) noexcept {
#pragma GCC unroll 6
  for (unsigned i = 0; i < rounds; ++i, key += 4) {
    MixWord<0>(r, key[0]);
    MixWord<1>(r, key[1]);
    MixWord<2>(r, key[2]);
    MixWord<3>(r, key[3]);
  }
}

// From the key's word before `end` down.
template <unsigned rounds>
[[gnu::always_inline]] inline void Unmix(State& r, const Word* end) noexcept {
#pragma GCC unroll 6
  for (unsigned i = 0; i < rounds; ++i) {
    end -= 4;
    UnmixWord<3>(r, end[3]);
    UnmixWord<2>(r, end[2]);
    UnmixWord<1>(r, end[1]);
    UnmixWord<0>(r, end[0]);
  }
}

void EncryptBlock(const Word* key, State& r) noexcept {
  Mix<5>(r, key);
  Mash(r, key);
  Mix<6>(r, key + 20);
  Mash(r, key);
  Mix<5>(r, key + 44);
}

void DecryptBlock(const Word* key, State& r) noexcept {
  Unmix<5>(r, key + 64);
  Unmash(r, key);
  Unmix<6>(r, key + 44);
  Unmash(r, key);
  Unmix<5>(r, key + 20);
}

State Load(const std::uint8_t* block) noexcept {
  State r{};
  for (std::size_t i = 0; i < 4; ++i)
    r[i] = static_cast<Word>(block[2 * i] | block[2 * i + 1] << 8);
  return r;
}

void Store(std::uint8_t* block, const State& r) noexcept {
  for (std::size_t i = 0; i < 4; ++i) {
    block[2 * i] = static_cast<std::uint8_t>(r[i]);
    block[2 * i + 1] = static_cast<std::uint8_t>(r[i] >> 8);
  }
}

void Add(State& r, const State& other) noexcept {
  for (std::size_t i = 0; i < 4; ++i) r[i] ^= other[i];
}

}  // namespace

void EncryptCbc(const Rc2Key& key, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept {
  State chain = Load(feedback);
  for (std::uint8_t* const end = data + length; data != end; data += kBlockSize) {
    Add(chain, Load(data));
    EncryptBlock(key.words.data(), chain);
    Store(data, chain);
  }
  Store(feedback, chain);
}

void DecryptCbc(const Rc2Key& key, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept {
  State previous = Load(feedback);
  for (std::uint8_t* const end = data + length; data != end; data += kBlockSize) {
    const State ciphertext = Load(data);
    State r = ciphertext;
    DecryptBlock(key.words.data(), r);
    Add(r, previous);
    Store(data, r);
    previous = ciphertext;
  }
  Store(feedback, previous);
}

}  // namespace latchkey::provider::rc2
