// 32 blocks at a time; compiled for AVX2. A key word is looked up by byte shuffles of sixteen bytes
// each, so that no memory is addressed by the data.
#include <immintrin.h>

#include "provider/portable/kernels/rc2_lanes.h"

namespace latchkey::provider {
namespace {

struct Vector : Rc2Vectors<32> {
  // The key as two tables of bytes, each of four parts of 16 bytes, so that a byte shuffle looks up
  // the index in each byte: the even bytes are those of the first group, the odd ones of the
  // second.
  class Table {
   public:
    explicit Table(const std::uint16_t* words) noexcept {
      for (std::size_t part = 0; part < kParts; ++part) {
        Half first;
        Half second;
        std::memcpy(&first, words + 16 * part, sizeof first);
        std::memcpy(&second, words + 16 * part + 8, sizeof second);
        low_[part] = BytesOf(first & 0xFF, second & 0xFF);
        high_[part] = BytesOf(first >> 8, second >> 8);
      }
    }

    // The key words that the low six bits of each lane choose. A shuffle returns 0 for an index
    // whose top bit is set, as it is here for an index of another part.
    void WordsAt(const Lanes (&indexes)[kGroups], Lanes (&words)[kGroups]) const noexcept {
      const auto index = reinterpret_cast<Bytes>((indexes[0] & 63) | (indexes[1] & 63) << 8);
      Bytes low{};
      Bytes high{};
#pragma GCC unroll 4
      for (std::uint8_t part = 0; part < kParts; ++part) {
        const Bytes inPart = (index ^ static_cast<std::uint8_t>(part << 4)) + 0x70;
        low |= Shuffle(low_[part], inPart);
        high |= Shuffle(high_[part], inPart);
      }
      const auto lows = reinterpret_cast<Lanes>(low);
      const auto highs = reinterpret_cast<Lanes>(high);
      words[0] = (lows & 0xFF) | highs << 8;
      words[1] = lows >> 8 | (highs & 0xFF00);
    }

   private:
    using Bytes = std::uint8_t __attribute__((vector_size(32)));
    using Half = std::uint16_t __attribute__((vector_size(16)));
    static constexpr std::size_t kParts = 4;

    // The low bytes of 16 words, in each half.
    static Bytes BytesOf(Half first, Half second) noexcept {
      return reinterpret_cast<Bytes>(_mm256_broadcastsi128_si256(
          _mm_packus_epi16(reinterpret_cast<__m128i>(first), reinterpret_cast<__m128i>(second))));
    }

    static Bytes Shuffle(Bytes table, Bytes index) noexcept {
      return reinterpret_cast<Bytes>(
          _mm256_shuffle_epi8(reinterpret_cast<__m256i>(table), reinterpret_cast<__m256i>(index)));
    }

    Bytes low_[kParts];
    Bytes high_[kParts];
  };
};

using Kernel = Rc2Lanes<Vector>;

}  // namespace

constinit const LaneKernels<Rc2Key> kRc2LanesAvx2{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 4, Kernel::kLanes / 4};

}  // namespace latchkey::provider
