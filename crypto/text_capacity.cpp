#include "crypto/text_capacity.h"

#include <limits>

#include "base/checked_arithmetic.h"

namespace latchkey {
namespace {

constexpr std::int32_t kInitialCapacity = 90'000;
constexpr std::int32_t kCapacityStep = 10'000;
// The largest capacity that can be reached without overflow.
constexpr std::int32_t kLargestCapacity =
    std::numeric_limits<std::int32_t>::max() -
    (std::numeric_limits<std::int32_t>::max() - kInitialCapacity) % kCapacityStep;

}  // namespace

void CheckTextCapacity(std::size_t pieces, std::int32_t pieceLength) {
  const auto length = CheckedMultiply(NarrowTo<std::int32_t>(pieces), pieceLength);
  // The last piece ends just before this position, the largest that is compared with the capacity.
  const std::int32_t end = CheckedAdd(length, 1);
  if (end >= kLargestCapacity) throw Fault(FaultNumber::Overflow);
}

}  // namespace latchkey
