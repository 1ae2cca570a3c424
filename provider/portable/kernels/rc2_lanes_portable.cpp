// 16 blocks at a time, in the compiler's 128-bit vectors, which it maps to the target's registers.
#include "provider/portable/kernels/rc2_lanes.h"

namespace latchkey::provider {
namespace {

struct Vector : Rc2Vectors<16> {
  class Table {
   public:
    explicit Table(const std::uint16_t* words) noexcept : words_(words) {}

    // The key words that the low six bits of each lane choose.
    void WordsAt(const Lanes (&indexes)[kGroups], Lanes (&words)[kGroups]) const noexcept {
#pragma GCC unroll 4
      for (std::size_t g = 0; g < kGroups; ++g) {
        const auto fours = reinterpret_cast<Word>(indexes[g] & 63);
#pragma GCC unroll 8
        for (unsigned i = 0; i < sizeof(Lanes) / sizeof(std::uint16_t); ++i) {
          const std::size_t place = kernels::PlaceInLane<4>(i % 4);
          words[g][i] = words_[static_cast<std::uint16_t>(fours[i / 4] >> (16 * place))];
        }
      }
    }

   private:
    const std::uint16_t* words_;
  };
};

using Kernel = Rc2Lanes<Vector>;

}  // namespace

constinit const LaneKernels<Rc2Key> kRc2LanesPortable{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 2, Kernel::kLanes / 2};

}  // namespace latchkey::provider
