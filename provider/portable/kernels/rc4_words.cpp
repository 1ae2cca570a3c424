// The cipher is that of K. Kaukonen and R. Thayer, "A Stream Cipher Encryption Algorithm 'Arcfour'"
// (draft-kaukonen-cipher-arcfour, 1999), with the same names for i, j and the permutation.
//
// Stores eight bytes of key stream at once, since single stores to the data would delay the stores
// to the permutation, which the next byte reads. The eight bytes use one base address, so that only
// j is computed for each. j is added as a byte if the CPU supports that, because each byte waits
// for the chain of look-ups and additions through j.
#include "provider/portable/kernels/rc4_words.h"

#include <bit>
#include <cstddef>
#include <cstring>

namespace latchkey::provider {
namespace {

constexpr std::size_t kStep = 8;

// The sum as a byte, in a whole register. Compilers would truncate the sum in a second step.
[[gnu::always_inline]] inline void AddByte(std::size_t& sum, std::size_t byte) noexcept {
#ifdef LATCHKEY_X86_KERNELS
  __asm__("addb %b1, %b0" : "+q"(sum) : "q"(byte) : "cc");
#else
  sum = (sum + byte) & 0xFF;
#endif
}

// The byte of the key stream for the permutation's place `at`; updates j.
[[gnu::always_inline]] inline std::uint8_t Next(std::uint8_t* permutation, std::uint8_t* at,
                                                std::size_t& j) noexcept {
  const std::size_t first = *at;
  AddByte(j, first);
  std::size_t second = permutation[j];
  permutation[j] = static_cast<std::uint8_t>(first);
  *at = static_cast<std::uint8_t>(second);
  AddByte(second, first);
  return permutation[second];
}

// The next eight, in the order of memory.
[[gnu::always_inline]] inline void NextEight(std::uint8_t* permutation, std::uint8_t* at,
                                             std::size_t& j, std::uint8_t* data) noexcept {
  constexpr bool kLowFirst = std::endian::native == std::endian::little;
  std::uint64_t stream = 0;
#pragma GCC unroll 8
  for (unsigned n = 0; n < kStep; ++n) {
    stream |= std::uint64_t{Next(permutation, at + n, j)} << (8 * (kLowFirst ? n : kStep - 1 - n));
  }
  std::uint64_t word = 0;
  std::memcpy(&word, data, sizeof word);
  word ^= stream;
  std::memcpy(data, &word, sizeof word);
}

}  // namespace

void AddRc4KeyStream(arcfour_ctx& state, std::span<std::uint8_t> data) noexcept {
  auto i =
      static_cast<std::uint8_t>(state.i + 1);  // for the next byte; the state has that of the last
  std::size_t j = state.j;
  std::size_t done = 0;
  const auto addByte = [&] { data[done++] ^= Next(state.S, state.S + i++, j); };
  while (done < data.size() && i % kStep != 0) addByte();
  for (; data.size() - done >= kStep; done += kStep) {
    NextEight(state.S, state.S + i, j, data.data() + done);
    i = static_cast<std::uint8_t>(i + kStep);
  }
  while (done < data.size()) addByte();
  state.i = static_cast<std::uint8_t>(i - 1);
  state.j = static_cast<std::uint8_t>(j);
}

}  // namespace latchkey::provider
