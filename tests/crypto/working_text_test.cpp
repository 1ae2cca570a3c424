#include "crypto/working_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "tests/support/bytes.h"
#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

constexpr std::int64_t kLargestLong = std::numeric_limits<std::int32_t>::max();

// The rule carried out one piece after another: the number of pieces that can be written before a
// position or the capacity leaves 32 bits.
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
  return FaultOf([&] { WorkingText::CheckCapacity(pieces, pieceLength); });
}

WorkingText Holding(std::string_view text) {
  WorkingText working(text.size(), 1);
  std::copy(text.begin(), text.end(), working.Codes().begin());
  return working;
}

std::string TrimmedOf(std::string_view text) {
  const WorkingText working = Holding(text);
  return {working.Trimmed().begin(), working.Trimmed().end()};
}

TEST(WorkingTextTest, OverflowsWhereWritingPieceByPieceDoes) {
  for (const std::int32_t pieceLength : {97, 100, 997, 1000, 9973, 10'000}) {
    const std::size_t most = PiecesThatFit(pieceLength);
    EXPECT_EQ(FaultOfChecking(most, pieceLength), kNoFault) << pieceLength;
    EXPECT_EQ(FaultOfChecking(most + 1, pieceLength), 6) << pieceLength;
  }
}

// The capacity may grow to 2,147,480,000 characters and no further, so the position behind the last
// piece must stay below that.
TEST(WorkingTextTest, OverflowsAtTheEdgeForSinglesAndPairs) {
  EXPECT_EQ(FaultOfChecking(2'147'479'998, 1), kNoFault);
  EXPECT_EQ(FaultOfChecking(2'147'479'999, 1), 6);
  EXPECT_EQ(FaultOfChecking(1'073'739'999, 2), kNoFault);
  EXPECT_EQ(FaultOfChecking(1'073'740'000, 2), 6);
}

TEST(WorkingTextTest, OverflowsForMorePiecesThanALongCounts) {
  EXPECT_EQ(FaultOfChecking(2'147'483'647, 1), 6);
  EXPECT_EQ(FaultOfChecking(2'147'483'648, 1), 6);
  EXPECT_EQ(FaultOfChecking(std::numeric_limits<std::size_t>::max(), 2), 6);
}

TEST(WorkingTextTest, NoPiecesAlwaysFit) {
  EXPECT_EQ(FaultOfChecking(0, 1), kNoFault);
  EXPECT_TRUE(WorkingText(0, 2).Trimmed().empty());
}

TEST(WorkingTextTest, HoldsAllPieces) { EXPECT_EQ(WorkingText(5, 2).Codes().size(), 10U); }

TEST(WorkingTextTest, RefusesToBeMadeTooLarge) {
  EXPECT_EQ(FaultOf([] { WorkingText(2'147'483'647, 2); }), 6);
}

TEST(WorkingTextTest, LosesTrailingSpacesOnly) {
  EXPECT_EQ(TrimmedOf("  a b  "), "  a b");
  EXPECT_EQ(TrimmedOf("    "), "");
  EXPECT_EQ(TrimmedOf("a\t"), "a\t");
  EXPECT_EQ(TrimmedOf(std::string_view("a \0", 3)), std::string("a \0", 3));
}

}  // namespace
}  // namespace latchkey::test
