// Encryption of one block of each of many messages at once: a common description of the kernels for
// each kind of CPU.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/kernels/cpu_level.h"
#include "provider/portable/kernels/bulk_decryption.h"

namespace latchkey::provider {

// Gives a kernel its blocks. Not a class with virtual functions, whose code would also be in files
// that are compiled for one kind of CPU.
struct BlockSource {
  // Takes the encrypted blocks of the call before, at the same address, and returns the next ones,
  // the kernel's number of lanes; null at the end.
  std::uint8_t* (*next)(void* context) noexcept;
  void* context;
};

template <class Key>
struct LaneEncryption {
  // Encrypts each block that the source gives.
  void (*encrypt)(const Key& key, const BlockSource& source) noexcept;
  std::size_t lanes;       // at most kMostLanes
  std::size_t worthLanes;  // from this number of blocks on, it is faster than single blocks
};

inline constexpr std::size_t kMostLanes = kLargestBatch / 8;

[[nodiscard]] const LaneEncryption<des::KeySchedule>& DesLaneEncryption(CpuLevel level) noexcept;
[[nodiscard]] const LaneEncryption<Rc2Key>& Rc2LaneEncryption(CpuLevel level) noexcept;

// The implementations, in the files of those for decryption.
extern const LaneEncryption<des::KeySchedule> kDesLanesPortable;
extern const LaneEncryption<des::KeySchedule> kDesLanesAvx2;
extern const LaneEncryption<des::KeySchedule> kDesLanesAvx512;
extern const LaneEncryption<des::KeySchedule> kDesLanesNeon;
extern const LaneEncryption<Rc2Key> kRc2LanesPortable;
extern const LaneEncryption<Rc2Key> kRc2LanesAvx2;
extern const LaneEncryption<Rc2Key> kRc2LanesAvx512;
extern const LaneEncryption<Rc2Key> kRc2LanesNeon;

}  // namespace latchkey::provider
