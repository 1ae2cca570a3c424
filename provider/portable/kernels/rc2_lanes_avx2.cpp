// 32 blocks at a time; compiled for AVX2. A key word is looked up by byte shuffles of eight words
// each, so that no memory is addressed by the data.
#include <immintrin.h>

#include "provider/portable/kernels/rc2_lanes.h"

namespace latchkey::provider {
namespace {

struct Vector {
  using Word = std::uint64_t __attribute__((vector_size(32)));
  using Lanes = std::uint16_t __attribute__((vector_size(32)));

  static Lanes Spread(std::uint16_t value) noexcept { return Lanes{} + value; }

  // In each bit: `one` if `which` is set, otherwise `zero`.
  static Lanes Choose(Lanes which, Lanes one, Lanes zero) noexcept {
    return zero ^ (which & (one ^ zero));
  }

  class Table {
   public:
    explicit Table(const std::uint16_t* words) noexcept {
      for (std::size_t i = 0; i < 8; ++i) {
        __m128i eight;
        std::memcpy(&eight, words + 8 * i, sizeof eight);
        parts_[i] = _mm256_broadcastsi128_si256(eight);
      }
    }

    // Bits 0 to 2 of the index choose in each part, bits 3 to 5 among the eight parts. A blend uses
    // the top bit of each byte, so both bytes of a lane get the index.
    [[nodiscard]] Lanes WordsAt(Lanes index) const noexcept {
      const Lanes both = index | index << 8;
      const auto bytes = reinterpret_cast<__m256i>((both & 0x0707) * 2 + 0x0100);
      __m256i found[8];
      for (std::size_t i = 0; i < 8; ++i) found[i] = _mm256_shuffle_epi8(parts_[i], bytes);
      for (std::size_t i = 0; i < 4; ++i) found[i] = Pick(found, 2 * i, both << 4);
      for (std::size_t i = 0; i < 2; ++i) found[i] = Pick(found, 2 * i, both << 3);
      return reinterpret_cast<Lanes>(Pick(found, 0, both << 2));
    }

   private:
    static __m256i Pick(const __m256i* found, std::size_t i, Lanes second) noexcept {
      return _mm256_blendv_epi8(found[i], found[i + 1], reinterpret_cast<__m256i>(second));
    }

    __m256i parts_[8];
  };
};

using Kernel = Rc2Lanes<Vector>;

}  // namespace

constinit const BulkDecryption<Rc2Key> kRc2BulkAvx2{&Kernel::Decrypt, Kernel::kBatchBytes,
                                                    Kernel::kBatchBytes / 4};

constinit const LaneEncryption<Rc2Key> kRc2LanesAvx2{&Kernel::Encrypt, Kernel::kLanes,
                                                     Kernel::kLanes / 4};

}  // namespace latchkey::provider
