// 64 blocks at a time in plain 64-bit words.
#include "provider/portable/kernels/bulk_decryption.h"
#include "provider/portable/kernels/des_bitslice.h"
#include "provider/portable/kernels/des_sboxes_gates.h"

namespace latchkey::provider {
namespace {

using Word = std::uint64_t;
using Kernel = des::Bitslice<Word, des::GateCircuits<Word>>;

}  // namespace

constinit const BulkDecryption<des::KeySchedule> kDesBulkPortable{
    &Kernel::Decrypt, Kernel::kBatchBytes, Kernel::kBatchBytes / 4 * 3};

constinit const LaneEncryption<des::KeySchedule> kDesLanesPortable{&Kernel::Encrypt, Kernel::kLanes,
                                                                   Kernel::kLanes / 4 * 3};

}  // namespace latchkey::provider
