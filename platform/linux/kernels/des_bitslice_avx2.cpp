// 256 blocks at a time; compiled for AVX2.
#include "platform/linux/kernels/bulk_decryption.h"
#include "platform/linux/kernels/des_bitslice.h"
#include "platform/linux/kernels/des_sboxes_gates.h"

namespace latchkey::platform {
namespace {

using Word = std::uint64_t __attribute__((vector_size(32)));
using Kernel = des::Bitslice<Word, des::GateCircuits<Word>>;

}  // namespace

constinit const BulkDecryption<des::KeySchedule> kDesBulkAvx2{&Kernel::Decrypt, Kernel::kBatchBytes,
                                                              Kernel::kBatchBytes / 8};

}  // namespace latchkey::platform
