// MD5 (RFC 1321), unrolled. The chain from one step to the next limits the speed, so each function
// uses the newest word as late as possible, and adds parts that have no bit in common.
#include "provider/portable/kernels/hash_blocks.h"
#include "provider/portable/kernels/hashes.h"

namespace latchkey::provider {
namespace {

using Word = std::uint32_t;

// RFC 1321's table T.
constexpr std::array<Word, 64> kConstants{0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE,
                                          0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,  //
                                          0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE,
                                          0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,  //
                                          0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA,
                                          0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,  //
                                          0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED,
                                          0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,  //
                                          0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C,
                                          0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,  //
                                          0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05,
                                          0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,  //
                                          0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039,
                                          0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,  //
                                          0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1,
                                          0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391};

struct Choose {
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + ((b & (c ^ d)) ^ d); }
};

struct ChooseTurned {
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + (c & ~d) + (b & d); }
};

struct Parity {
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + (b ^ (c ^ d)); }
};

struct Mixed {
  static Word Sum(Word a, Word b, Word c, Word d) noexcept { return a + (c ^ (b | ~d)); }
};

template <class Function, std::size_t number, int turn>
[[gnu::always_inline]] inline void Step(Word& a, Word b, Word c, Word d, Word x) noexcept {
  a = b + std::rotl(Function::Sum(a + x + kConstants[number], b, c, d), turn);
}

template <class Function, std::size_t first, int s0, int s1, int s2, int s3>
[[gnu::always_inline]] inline void FourSteps(Word* s, Word w, Word x, Word y, Word z) noexcept {
  Step<Function, first, s0>(s[0], s[1], s[2], s[3], w);
  Step<Function, first + 1, s1>(s[3], s[0], s[1], s[2], x);
  Step<Function, first + 2, s2>(s[2], s[3], s[0], s[1], y);
  Step<Function, first + 3, s3>(s[1], s[2], s[3], s[0], z);
}

struct Md5Block {
  [[gnu::always_inline]] static void CompressOne(Word* s, const std::uint8_t* data) noexcept {
    const auto x = [data](std::size_t i) { return LowFirstWord(data + 4 * i); };
    FourSteps<Choose, 0, 7, 12, 17, 22>(s, x(0), x(1), x(2), x(3));
    FourSteps<Choose, 4, 7, 12, 17, 22>(s, x(4), x(5), x(6), x(7));
    FourSteps<Choose, 8, 7, 12, 17, 22>(s, x(8), x(9), x(10), x(11));
    FourSteps<Choose, 12, 7, 12, 17, 22>(s, x(12), x(13), x(14), x(15));
    FourSteps<ChooseTurned, 16, 5, 9, 14, 20>(s, x(1), x(6), x(11), x(0));
    FourSteps<ChooseTurned, 20, 5, 9, 14, 20>(s, x(5), x(10), x(15), x(4));
    FourSteps<ChooseTurned, 24, 5, 9, 14, 20>(s, x(9), x(14), x(3), x(8));
    FourSteps<ChooseTurned, 28, 5, 9, 14, 20>(s, x(13), x(2), x(7), x(12));
    FourSteps<Parity, 32, 4, 11, 16, 23>(s, x(5), x(8), x(11), x(14));
    FourSteps<Parity, 36, 4, 11, 16, 23>(s, x(1), x(4), x(7), x(10));
    FourSteps<Parity, 40, 4, 11, 16, 23>(s, x(13), x(0), x(3), x(6));
    FourSteps<Parity, 44, 4, 11, 16, 23>(s, x(9), x(12), x(15), x(2));
    FourSteps<Mixed, 48, 6, 10, 15, 21>(s, x(0), x(7), x(14), x(5));
    FourSteps<Mixed, 52, 6, 10, 15, 21>(s, x(12), x(3), x(10), x(1));
    FourSteps<Mixed, 56, 6, 10, 15, 21>(s, x(8), x(15), x(6), x(13));
    FourSteps<Mixed, 60, 6, 10, 15, 21>(s, x(4), x(11), x(2), x(9));
  }
};

}  // namespace

constinit const nettle_hash kMd5 = HashBlocks<FourWordHash<Md5Block>>::Describe("md5");

}  // namespace latchkey::provider
