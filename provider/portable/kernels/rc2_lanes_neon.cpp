// 16 blocks at a time in the 128-bit vectors of NEON, which every ARM64 CPU has. The expanded key
// is the table of two look-up instructions of 64 bytes each, so that no memory is addressed by the
// data.
#include <arm_neon.h>

#include "provider/portable/kernels/rc2_lanes.h"

namespace latchkey::provider {
namespace {

struct Vector : Rc2Vectors<16> {
  class Table {
   public:
    explicit Table(const std::uint16_t* words) noexcept {
      std::memcpy(&low_, words, sizeof low_);
      std::memcpy(&high_, words + 32, sizeof high_);
    }

    // The key words that the low six bits of each lane choose. `bytes` has the indexes of both
    // bytes of each word. The first look-up returns 0 for an index above 63. The second one keeps
    // the first's result for an index below 64, which the subtraction makes too large.
    void WordsAt(const Lanes (&indexes)[kGroups], Lanes (&words)[kGroups]) const noexcept {
      for (std::size_t g = 0; g < kGroups; ++g) {
        const auto bytes = reinterpret_cast<uint8x16_t>((indexes[g] & 63) * 0x0202 + 0x0100);
        const uint8x16_t found = vqtbl4q_u8(low_, bytes);
        words[g] = reinterpret_cast<Lanes>(vqtbx4q_u8(found, high_, bytes - 64));
      }
    }

   private:
    uint8x16x4_t low_;
    uint8x16x4_t high_;
  };
};

using Kernel = Rc2Lanes<Vector>;

}  // namespace

constinit const LaneKernels<Rc2Key> kRc2LanesNeon{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 4, Kernel::kLanes / 4};

}  // namespace latchkey::provider
