// 128 blocks at a time, in the compiler's 128-bit vectors, which it maps to the target's registers.
#include "provider/portable/kernels/des_bitslice.h"
#include "provider/portable/kernels/des_sboxes_gates.h"

namespace latchkey::provider {
namespace {

using Word = std::uint64_t __attribute__((vector_size(16)));
using Kernel = des::Bitslice<Word, des::GateCircuits<Word>>;

}  // namespace

constinit const LaneKernels<des::KeySchedule> kDesLanesPortable{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 2, Kernel::kLanes / 4 * 3};

}  // namespace latchkey::provider
