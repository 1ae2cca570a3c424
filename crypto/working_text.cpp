#include "crypto/working_text.h"

#include <limits>

#include "base/checked_arithmetic.h"
#include "crypto/text_codec.h"
#include "platform/large_memory.h"

namespace latchkey {
namespace {

// The capacity from which another step would overflow.
constexpr std::int32_t kLargestCapacity =
    std::numeric_limits<std::int32_t>::max() -
    (std::numeric_limits<std::int32_t>::max() - WorkingText::kInitialCapacity) %
        WorkingText::kCapacityStep;

}  // namespace

WorkingText::WorkingText(std::size_t pieces, std::int32_t pieceLength) {
  CheckCapacity(pieces, pieceLength);
  codes_ = WorkingBytes(pieces * static_cast<std::size_t>(pieceLength));
  platform::ExpectFilling(codes_.data(), codes_.size());
}

void WorkingText::CheckCapacity(std::size_t pieces, std::int32_t pieceLength) {
  const auto length = CheckedMultiply(NarrowTo<std::int32_t>(pieces), pieceLength);
  // The last piece ends just before this position, the largest that is compared with the capacity.
  const std::int32_t end = CheckedAdd(length, 1);
  if (end >= kLargestCapacity) throw Fault(FaultNumber::Overflow);
}

std::span<const std::uint8_t> WorkingText::Trimmed() const noexcept {
  return TrimTrailingSpaces(codes_.All());
}

}  // namespace latchkey
