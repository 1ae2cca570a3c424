// One store of the result for eight bytes of key stream: stores to the data would otherwise queue
// among those to the permutation, which each next byte reads. The value at the next index is read
// before this byte's stores and corrected if they changed it: left to itself, the processor has to
// guess whether that read may pass the stores, and a wrong guess costs more than the comparison.
#include "platform/linux/kernels/rc4_words.h"

#include <bit>
#include <cstddef>
#include <cstring>

namespace latchkey::platform {
namespace {

// Bytes, in whole registers: the selection below has no form for bytes.
struct Position {
  std::uint32_t i;  // of the next byte, where the published index stands one behind
  std::uint8_t j;
  std::uint32_t first;  // the permutation's value at i
};

// The next byte of the key stream.
[[gnu::always_inline]] inline std::uint8_t Next(std::uint8_t* permutation, Position& at) noexcept {
  const std::uint32_t first = at.first;
  at.j = static_cast<std::uint8_t>(at.j + first);
  const std::uint32_t second = permutation[at.j];
  const std::uint32_t following = (at.i + 1) & 0xFF;
  const std::uint32_t unchanged = permutation[following];
  permutation[at.j] = static_cast<std::uint8_t>(first);
  permutation[at.i] = static_cast<std::uint8_t>(second);
  at.first = following == at.j ? first : unchanged;
  at.i = following;
  return permutation[static_cast<std::uint8_t>(first + second)];
}

// The next eight, in the order of memory.
[[gnu::always_inline]] inline void NextEight(std::uint8_t* permutation, Position& at,
                                             std::uint8_t* data) noexcept {
  constexpr bool kLowFirst = std::endian::native == std::endian::little;
  std::uint64_t stream = 0;
#pragma GCC unroll 8
  for (unsigned n = 0; n < 8; ++n) {
    stream |= std::uint64_t{Next(permutation, at)} << (8 * (kLowFirst ? n : 7 - n));
  }
  std::uint64_t word = 0;
  std::memcpy(&word, data, sizeof word);
  word ^= stream;
  std::memcpy(data, &word, sizeof word);
}

}  // namespace

void AddRc4KeyStream(arcfour_ctx& state, std::span<std::uint8_t> data) noexcept {
  const auto next = static_cast<std::uint8_t>(state.i + 1);
  Position at{next, state.j, state.S[next]};
  std::size_t done = 0;
  for (; data.size() - done >= 8; done += 8) NextEight(state.S, at, data.data() + done);
  for (; done < data.size(); ++done) data[done] ^= Next(state.S, at);
  state.i = static_cast<std::uint8_t>(at.i - 1);
  state.j = at.j;
}

}  // namespace latchkey::platform
