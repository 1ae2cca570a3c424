// 256 blocks at a time; compiled for AVX2.
#include "provider/portable/kernels/des_bitslice.h"
#include "provider/portable/kernels/des_sboxes_gates.h"

namespace latchkey::provider {
namespace {

using Word = std::uint64_t __attribute__((vector_size(32)));
using Kernel = des::Bitslice<Word, des::GateCircuits<Word>>;

}  // namespace

constinit const LaneKernels<des::KeySchedule> kDesLanesAvx2{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 8, Kernel::kLanes / 8};

}  // namespace latchkey::provider
