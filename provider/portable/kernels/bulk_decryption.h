// CBC decryption of many blocks at once: a common description of the kernels for each kind of CPU.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/kernels/cpu_level.h"
#include "provider/portable/kernels/des_key.h"

namespace latchkey::provider {

// Decrypts `batches` times `batchBytes` bytes in place. `feedback`, eight bytes, is the ciphertext
// block before the data and becomes the last one of it.
template <class Key>
using DecryptBatches = void (*)(const Key& key, std::uint8_t* data, std::size_t batches,
                                std::uint8_t* feedback);

template <class Key>
struct BulkDecryption {
  DecryptBatches<Key> decrypt;
  std::size_t batchBytes;
  std::size_t
      worthBytes;  // from this length on, a partly filled batch is faster than single blocks
};

inline constexpr std::size_t kLargestBatch = 4096;  // bytes, for all kernels

struct Rc2Key {
  std::array<std::uint16_t, 64> words;  // RFC 2268's K[0] to K[63]
};

[[nodiscard]] const BulkDecryption<des::KeySchedule>& DesBulk(CpuLevel level) noexcept;
[[nodiscard]] const BulkDecryption<Rc2Key>& Rc2Bulk(CpuLevel level) noexcept;

// The implementations, one file each. Those of a level exist if the build has kernels for it.
extern const BulkDecryption<des::KeySchedule> kDesBulkPortable;
extern const BulkDecryption<des::KeySchedule> kDesBulkAvx2;
extern const BulkDecryption<des::KeySchedule> kDesBulkAvx512;
extern const BulkDecryption<des::KeySchedule> kDesBulkNeon;
extern const BulkDecryption<Rc2Key> kRc2BulkPortable;
extern const BulkDecryption<Rc2Key> kRc2BulkAvx2;
extern const BulkDecryption<Rc2Key> kRc2BulkAvx512;
extern const BulkDecryption<Rc2Key> kRc2BulkNeon;

}  // namespace latchkey::provider
