// 64 blocks at a time; compiled for AVX-512BW. The whole expanded key is the table of one permute
// instruction, so that no memory is addressed by the data.
#include <immintrin.h>

#include "provider/portable/kernels/rc2_lanes.h"

namespace latchkey::provider {
namespace {

struct Vector : Rc2Vectors<64> {
  // In each bit: `one` if `which` is set, otherwise `zero`.
  static Lanes Choose(Lanes which, Lanes one, Lanes zero) noexcept {
    return reinterpret_cast<Lanes>(
        _mm512_ternarylogic_epi64(reinterpret_cast<__m512i>(which), reinterpret_cast<__m512i>(one),
                                  reinterpret_cast<__m512i>(zero), 0xCA));
  }

  class Table {
   public:
    explicit Table(const std::uint16_t* words) noexcept
        : low_(_mm512_loadu_si512(words)), high_(_mm512_loadu_si512(words + 32)) {}

    // The key words that the low six bits of each lane choose.
    void WordsAt(const Lanes (&indexes)[kGroups], Lanes (&words)[kGroups]) const noexcept {
#pragma GCC unroll 4
      for (std::size_t g = 0; g < kGroups; ++g) {
        words[g] = reinterpret_cast<Lanes>(
            _mm512_permutex2var_epi16(low_, reinterpret_cast<__m512i>(indexes[g]), high_));
      }
    }

   private:
    __m512i low_;
    __m512i high_;
  };
};

using Kernel = Rc2Lanes<Vector>;

}  // namespace

constinit const LaneKernels<Rc2Key> kRc2LanesAvx512{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 4, Kernel::kLanes / 4};

}  // namespace latchkey::provider
