// The plaintext that the command keeps between two pieces is wiped.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "cli/cipher_stream.h"
#include "crypto/algorithms.h"
#include "crypto/open_provider.h"

namespace latchkey::cli::test {
namespace {

constexpr std::size_t kPiece = 64;
constexpr std::size_t kLength = 3 * kPiece;
constexpr std::size_t kBorder = 9;       // the last block of a piece and the byte after it
constexpr std::size_t kFarBelow = 4096;  // so that the search does not overwrite its target
constexpr std::size_t kSearched = 6 * 1024;
constexpr std::uint8_t kMask = 0x5A;  // so that the search does not find itself

// The plaintext, byte by byte; no two borders look alike.
std::uint8_t MaskedByte(std::size_t position) {
  return static_cast<std::uint8_t>((position * 37 + 11) ^ (position >> 3U));
}

[[gnu::noinline]] void RunFarBelow(CipherWork& work, const ByteStreams& streams) {
  // Uninitialized, to keep what the stack holds.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
  std::array<volatile std::uint8_t, kFarBelow> below;
  below.front() = 0;
  RunCipher(work, streams, kPiece);
  below.back() = below.front();
}

// Whether the unused stack below the caller holds the bytes of a border.
[[gnu::noinline]] bool StackHolds(std::size_t border) {
  const std::uint8_t here = 0;
  const auto top = reinterpret_cast<std::uintptr_t>(&here);
  for (std::size_t depth = kSearched; depth > 64; --depth) {
    const auto* const stack = reinterpret_cast<const volatile std::uint8_t*>(top - depth);
    std::size_t same = 0;
    while (same < kBorder && (stack[same] ^ kMask) == MaskedByte(border + same)) ++same;
    if (same == kBorder) return true;
  }
  return false;
}

TEST(PieceBorderTest, NoPlaintextAtABorderStaysOnTheStack) {
  const UniqueContext context = OpenProvider(true);
  CipherWork work{CipherDirection::Encrypt, std::vector<PasswordKey>(1), 1, "file"};
  constexpr std::array<std::uint8_t, 6> kPassword{'s', 'e', 'c', 'r', 'e', 't'};
  ASSERT_EQ(work.keys.front().Derive(
                context, {FindHashAlgorithm(1).id, FindCipherAlgorithm(1, true), kPassword}),
            CipherStep::Done);
  std::size_t position = 0;
  std::size_t written = 0;
  RunFarBelow(work, {[&](std::span<std::uint8_t> bytes) {
                       const std::size_t count = std::min(bytes.size(), kLength - position);
                       for (std::uint8_t& byte : bytes.first(count)) {
                         byte = MaskedByte(position++) ^ kMask;
                       }
                       return count;
                     },
                     [] {}, [&](std::span<const std::uint8_t> bytes) { written += bytes.size(); }});
  EXPECT_EQ(written, kLength);
  EXPECT_FALSE(StackHolds(kPiece - kBorder + 1));
  EXPECT_FALSE(StackHolds(2 * kPiece - kBorder + 1));
}

}  // namespace
}  // namespace latchkey::cli::test
