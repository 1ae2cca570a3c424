// The block size of the ciphers, and the padding of their messages.
#pragma once

#include <cstddef>
#include <cstdint>

namespace latchkey::provider {

// In bytes, of every block cipher here: RC2, DES and 3DES.
inline constexpr std::size_t kBlockSize = 8;

// The most bytes that a cipher adds to a message.
inline constexpr std::size_t kLargestPadding = kBlockSize;

// The most bytes to pass to the provider in one call: whole blocks, and their number fits 32 bits.
inline constexpr std::size_t kLargestCall = std::size_t{1} << 30;

// The length of a message with its padding, 1 to kBlockSize bytes: RFC 8018, section 6.1.1.
[[nodiscard]] constexpr std::uint64_t PaddedLength(std::uint64_t length) noexcept {
  return (length | (kBlockSize - 1)) + 1;
}

}  // namespace latchkey::provider
