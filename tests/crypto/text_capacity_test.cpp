#include "crypto/text_capacity.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

constexpr std::int64_t kLargestLong = std::numeric_limits<std::int32_t>::max();

// Applies the rule one piece at a time. Returns the number of pieces that can be written before a
// position or the capacity exceeds 32 bits.
std::size_t PiecesThatFit(std::int64_t pieceLength) {
  std::int64_t capacity = 90'000;
  std::int64_t position = 1;
  for (std::size_t pieces = 0;; ++pieces) {
    const std::int64_t end = position + pieceLength;
    if (end > kLargestLong) return pieces;
    if (end >= capacity) capacity += 10'000;
    if (capacity > kLargestLong) return pieces;
    position = end;
  }
}

std::int32_t FaultOfChecking(std::size_t pieces, std::int32_t pieceLength) {
  return FaultOf([&] { CheckTextCapacity(pieces, pieceLength); });
}

TEST(TextCapacityTest, OverflowsExactlyWhenWritingPieceByPieceDoes) {
  for (const std::int32_t pieceLength : {97, 100, 997, 1000, 9973, 10'000}) {
    const std::size_t most = PiecesThatFit(pieceLength);
    EXPECT_EQ(FaultOfChecking(most, pieceLength), kNoFault) << pieceLength;
    EXPECT_EQ(FaultOfChecking(most + 1, pieceLength), 6) << pieceLength;
  }
}

// The capacity may grow to 2,147,480,000 characters and no further, so the position after the last
// piece must stay below that.
TEST(TextCapacityTest, OverflowsAtTheLimitForPiecesOfOneAndTwo) {
  EXPECT_EQ(FaultOfChecking(2'147'479'998, 1), kNoFault);
  EXPECT_EQ(FaultOfChecking(2'147'479'999, 1), 6);
  EXPECT_EQ(FaultOfChecking(1'073'739'999, 2), kNoFault);
  EXPECT_EQ(FaultOfChecking(1'073'740'000, 2), 6);
}

TEST(TextCapacityTest, OverflowsForMorePiecesThanFitALong) {
  EXPECT_EQ(FaultOfChecking(2'147'483'647, 1), 6);
  EXPECT_EQ(FaultOfChecking(2'147'483'648, 1), 6);
  EXPECT_EQ(FaultOfChecking(std::numeric_limits<std::size_t>::max(), 2), 6);
}

TEST(TextCapacityTest, NoPiecesAlwaysFit) { EXPECT_EQ(FaultOfChecking(0, 1), kNoFault); }

}  // namespace
}  // namespace latchkey::test
