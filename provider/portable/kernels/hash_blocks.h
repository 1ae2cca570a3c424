// The common part of MD4, MD5 and SHA-1: data gathered into blocks of 64 bytes, and one or two last
// blocks with a 1 bit, zeros and the length (RFC 1320 and 1321, section 3; FIPS 180-4, section 5).
#pragma once

#include <nettle/nettle-meta.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace latchkey::provider {

// Compression has kInitial (the state before any data), kWordOrder (of state, length and data in
// memory) and Compress(state, data, count), which processes `count` blocks.
template <class Compression>
class HashBlocks {
 public:
  static void Init(void* context) noexcept { new (context) HashBlocks; }

  static void Update(void* context, std::size_t length, const std::uint8_t* data) noexcept {
    static_cast<HashBlocks*>(context)->Add(data, length);
  }

  // Writes the first `length` bytes of the hash and restarts.
  static void Digest(void* context, std::size_t length, std::uint8_t* to) noexcept {
    static_cast<HashBlocks*>(context)->Finish(to, length);
    Init(context);
  }

  // In Nettle's form, as for hashes of the library.
  static constexpr nettle_hash Describe(const char* name) noexcept {
    return {name, sizeof(HashBlocks), kDigestSize, kBlock, &Init, &Update, &Digest};
  }

 private:
  static constexpr std::size_t kBlock = 64;
  static constexpr std::size_t kDigestSize = 4 * Compression::kInitial.size();

  void Add(const std::uint8_t* data, std::size_t length) noexcept {
    if (length == 0) return;  // `data` may be null
    const std::size_t held = length_ % kBlock;
    length_ += length;
    if (held > 0) {
      const std::size_t part = std::min(length, kBlock - held);
      std::memcpy(block_.data() + held, data, part);
      if (held + part < kBlock) return;
      Compression::Compress(state_.data(), block_.data(), 1);
      data += part;
      length -= part;
    }
    if (length >= kBlock) Compression::Compress(state_.data(), data, length / kBlock);
    std::memcpy(block_.data(), data + length / kBlock * kBlock, length % kBlock);
  }

  void Finish(std::uint8_t* to, std::size_t length) noexcept {
    std::size_t held = length_ % kBlock;
    block_[held++] = 0x80;
    if (held > kBlock - 8) {
      std::fill(block_.begin() + held, block_.end(), 0);
      Compression::Compress(state_.data(), block_.data(), 1);
      held = 0;
    }
    std::fill(block_.begin() + held, block_.end(), 0);
    const std::uint64_t bits = length_ * 8;
    const bool highFirst = Compression::kWordOrder == std::endian::big;
    for (unsigned i = 0; i < 8; ++i) {
      block_[kBlock - 8 + i] = static_cast<std::uint8_t>(bits >> (8 * (highFirst ? 7 - i : i)));
    }
    Compression::Compress(state_.data(), block_.data(), 1);
    for (unsigned i = 0; i < std::min(length, kDigestSize); ++i) {
      to[i] = static_cast<std::uint8_t>(state_[i / 4] >> (8 * (highFirst ? 3 - i % 4 : i % 4)));
    }
  }

  std::array<std::uint32_t, Compression::kInitial.size()> state_ = Compression::kInitial;
  std::uint64_t length_ = 0;  // bytes so far
  std::array<std::uint8_t, kBlock> block_{};
};

// The common part of MD4's and MD5's compression. Block::CompressOne processes one block in a copy
// of the state.
template <class Block>
struct FourWordHash {
  static constexpr std::array<std::uint32_t, 4> kInitial{0x67452301, 0xEFCDAB89, 0x98BADCFE,
                                                         0x10325476};
  static constexpr std::endian kWordOrder = std::endian::little;

  static void Compress(std::uint32_t* state, const std::uint8_t* data, std::size_t count) noexcept {
    std::uint32_t before[4] = {state[0], state[1], state[2], state[3]};
    for (; count > 0; --count, data += 64) {
      std::uint32_t s[4] = {before[0], before[1], before[2], before[3]};
      Block::CompressOne(s, data);
      for (std::size_t i = 0; i < 4; ++i) before[i] += s[i];
    }
    std::copy_n(before, 4, state);
  }
};

// A word in the order of MD4 and MD5: lowest byte first.
[[gnu::always_inline]] inline std::uint32_t LowFirstWord(const std::uint8_t* from) noexcept {
  return from[0] | std::uint32_t{from[1]} << 8 | std::uint32_t{from[2]} << 16 |
         std::uint32_t{from[3]} << 24;
}

}  // namespace latchkey::provider
