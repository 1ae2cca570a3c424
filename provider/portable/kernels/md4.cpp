// MD4 (RFC 1320), unrolled. The chain from one step to the next limits the speed, so each function
// uses the newest word as late as possible, and adds parts that have no bit in common.
#include "provider/portable/kernels/hash_blocks.h"
#include "provider/portable/kernels/hashes.h"

namespace latchkey::provider {
namespace {

using Word = std::uint32_t;

struct Choose {
  static constexpr Word kConstant = 0;
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + ((b & (c ^ d)) ^ d); }
};

struct Majority {
  static constexpr Word kConstant = 0x5A827999;
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + (c & d) + (b & (c ^ d)); }
};

struct Parity {
  static constexpr Word kConstant = 0x6ED9EBA1;
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + (b ^ (c ^ d)); }
};

template <class Function, int turn>
[[gnu::always_inline]] inline void Step(Word& a, Word b, Word c, Word d, Word x) noexcept {
  a = std::rotl(Function::Sum(a + x + Function::kConstant, b, c, d), turn);
}

template <class Function, int s0, int s1, int s2, int s3>
[[gnu::always_inline]] inline void FourSteps(Word* s, Word w, Word x, Word y, Word z) noexcept {
  Step<Function, s0>(s[0], s[1], s[2], s[3], w);
  Step<Function, s1>(s[3], s[0], s[1], s[2], x);
  Step<Function, s2>(s[2], s[3], s[0], s[1], y);
  Step<Function, s3>(s[1], s[2], s[3], s[0], z);
}

struct Md4Block {
  [[gnu::always_inline]] static void CompressOne(Word* s, const std::uint8_t* data) noexcept {
    const auto x = [data](std::size_t i) { return LowFirstWord(data + 4 * i); };
    FourSteps<Choose, 3, 7, 11, 19>(s, x(0), x(1), x(2), x(3));
    FourSteps<Choose, 3, 7, 11, 19>(s, x(4), x(5), x(6), x(7));
    FourSteps<Choose, 3, 7, 11, 19>(s, x(8), x(9), x(10), x(11));
    FourSteps<Choose, 3, 7, 11, 19>(s, x(12), x(13), x(14), x(15));
    FourSteps<Majority, 3, 5, 9, 13>(s, x(0), x(4), x(8), x(12));
    FourSteps<Majority, 3, 5, 9, 13>(s, x(1), x(5), x(9), x(13));
    FourSteps<Majority, 3, 5, 9, 13>(s, x(2), x(6), x(10), x(14));
    FourSteps<Majority, 3, 5, 9, 13>(s, x(3), x(7), x(11), x(15));
    FourSteps<Parity, 3, 9, 11, 15>(s, x(0), x(8), x(4), x(12));
    FourSteps<Parity, 3, 9, 11, 15>(s, x(2), x(10), x(6), x(14));
    FourSteps<Parity, 3, 9, 11, 15>(s, x(1), x(9), x(5), x(13));
    FourSteps<Parity, 3, 9, 11, 15>(s, x(3), x(11), x(7), x(15));
  }
};

}  // namespace

constinit const nettle_hash kMd4 = HashBlocks<FourWordHash<Md4Block>>::Describe("md4");

}  // namespace latchkey::provider
