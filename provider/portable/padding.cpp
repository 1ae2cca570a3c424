#include "provider/portable/padding.h"

#include "provider/block_size.h"

namespace latchkey::provider {
namespace {

// 1 if `left` is below `right`, otherwise 0, for bytes; without a branch.
unsigned IsBelow(unsigned left, unsigned right) noexcept { return (left - right) >> 31; }

}  // namespace

std::uint32_t PaddingLength(const std::uint8_t* block) noexcept {
  const unsigned count = block[kBlockSize - 1];
  unsigned faults = IsBelow(count, 1) | IsBelow(kBlockSize, count);
  for (unsigned fromEnd = 0; fromEnd < kBlockSize; ++fromEnd) {
    const unsigned difference = block[kBlockSize - 1 - fromEnd] ^ count;
    faults |= IsBelow(fromEnd, count) & IsBelow(0, difference);
  }
  return count & (faults - 1);
}

}  // namespace latchkey::provider
