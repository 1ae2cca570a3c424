// 64 blocks at a time in plain 64-bit words.
#include "platform/linux/kernels/bulk_decryption.h"
#include "platform/linux/kernels/des_bitslice.h"
#include "platform/linux/kernels/des_sboxes_gates.h"

namespace latchkey::platform {
namespace {

using Word = std::uint64_t;
using Kernel = des::Bitslice<Word, des::GateCircuits<Word>>;

}  // namespace

constinit const BulkDecryption<des::KeySchedule> kDesBulkPortable{
    &Kernel::Decrypt, Kernel::kBatchBytes, Kernel::kBatchBytes / 4 * 3};

}  // namespace latchkey::platform
