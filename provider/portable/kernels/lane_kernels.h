// A common description of the kernels that work on many blocks at once, one in each lane of their
// vectors, for each kind of CPU.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/kernels/cpu_level.h"
#include "provider/block_size.h"
#include "provider/portable/kernels/des_key.h"

namespace latchkey::provider {

struct Rc2Key {
  std::array<std::uint16_t, 64> words;  // RFC 2268's K[0] to K[63]
};

// Gives a kernel its blocks. Not a class with virtual functions, whose code would also be in files
// that are compiled for one kind of CPU.
struct BlockSource {
  // Takes the blocks that the previous call returned, encrypted in place, and returns the address
  // of the next blocks, one for each lane of the kernel; null at the end.
  std::uint8_t* (*next)(void* context) noexcept;
  void* context;
};

template <class Key>
struct LaneKernels {
  // CBC decryption of `batches` times `lanes` blocks in place. `feedback`, eight bytes, is the
  // ciphertext block before the data and becomes the last one of it.
  void (*decrypt)(const Key& key, std::uint8_t* data, std::size_t batches,
                  std::uint8_t* feedback) noexcept;
  // Encrypts each block that the source gives.
  void (*encrypt)(const Key& key, const BlockSource& source) noexcept;
  std::size_t lanes;  // at most kMostLanes
  // From these numbers of blocks on, the kernel is faster than single blocks.
  std::size_t worthDecrypting;
  std::size_t worthEncrypting;
};

inline constexpr std::size_t kMostLanes = 512;
inline constexpr std::size_t kLargestBatch = kMostLanes * kBlockSize;  // bytes

struct CipherKernels {
  const LaneKernels<des::KeySchedule>& des;
  const LaneKernels<Rc2Key>& rc2;
};

[[nodiscard]] const CipherKernels& KernelsOf(CpuLevel level) noexcept;

// The implementations, one file each. Those of a level exist if the build has kernels for it.
extern const LaneKernels<des::KeySchedule> kDesLanesPortable;
extern const LaneKernels<des::KeySchedule> kDesLanesAvx2;
extern const LaneKernels<des::KeySchedule> kDesLanesAvx512;
extern const LaneKernels<des::KeySchedule> kDesLanesNeon;
extern const LaneKernels<Rc2Key> kRc2LanesPortable;
extern const LaneKernels<Rc2Key> kRc2LanesAvx2;
extern const LaneKernels<Rc2Key> kRc2LanesAvx512;
extern const LaneKernels<Rc2Key> kRc2LanesNeon;

}  // namespace latchkey::provider
