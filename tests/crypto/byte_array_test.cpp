#include "latchkey/byte_array.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>

#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"
#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

const Bytes kElements{10, 20, 30, 40};

Bytes TextPartOf(const ByteArray& array) {
  return {array.TextElements().begin(), array.TextElements().end()};
}

TEST(ByteArrayTest, UnallocatedArrayHasNoBounds) {
  const ByteArray array;
  EXPECT_EQ(array.Dimensions(), 0);
  EXPECT_TRUE(array.Elements().empty());
  EXPECT_EQ(FaultOf([&] { return array.UpperBound(); }), 9);
  EXPECT_EQ(FaultOf([&] { return array.TextElements(); }), 9);
}

TEST(ByteArrayTest, AListOfElementsMakesAZeroBasedArray) {
  const ByteArray array{65, 66, 67};
  EXPECT_EQ(array.Dimensions(), 1);
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), 2);
  EXPECT_EQ(ElementsOf(array), (Bytes{65, 66, 67}));
}

TEST(ByteArrayTest, AnArrayWithoutElementsHasAnUpperBoundAndNoText) {
  const ByteArray array{std::span<const std::uint8_t>()};
  EXPECT_EQ(array.Dimensions(), 1);
  EXPECT_EQ(array.UpperBound(), -1);
  EXPECT_EQ(FaultOf([&] { return array.TextElements(); }), 9);
}

TEST(ByteArrayTest, TextElementsOmitTheLastElement) {
  EXPECT_EQ(TextPartOf(ByteArray{65, 66, 67}), (Bytes{65, 66}));
  EXPECT_EQ(TextPartOf(ByteArray{65}), Bytes());
}

TEST(ByteArrayTest, CodesGetATrailingZeroElement) {
  const ByteArray array = ByteArray::WithTrailingZero(Bytes{97, 98, 99});
  EXPECT_EQ(array.UpperBound(), 3);
  EXPECT_EQ(ElementsOf(array), (Bytes{97, 98, 99, 0}));
  EXPECT_EQ(ElementsOf(ByteArray::WithTrailingZero({})), Bytes{0});
}

TEST(ByteArrayTest, TextElementsStartAtZeroWithANegativeLowerBound) {
  const ByteArray array = ByteArray::WithShape(1, -1, 2, kElements);
  EXPECT_EQ(array.LowerBound(), -1);
  EXPECT_EQ(array.UpperBound(), 2);
  EXPECT_EQ(TextPartOf(array), (Bytes{20, 30}));
}

TEST(ByteArrayTest, HasNoTextElementsWhenTheUpperBoundIsZero) {
  EXPECT_EQ(TextPartOf(ByteArray::WithShape(1, -3, 0, kElements)), Bytes());
}

TEST(ByteArrayTest, BoundsWithoutZeroAreOutOfRangeForText) {
  for (const auto& [lower, upper] : {std::pair{1, 4}, {-4, -1}, {0, -1}, {1, 0}}) {
    const std::span elements(kElements.data(), static_cast<std::size_t>(upper - lower + 1));
    const ByteArray array = ByteArray::WithShape(1, lower, upper, elements);
    EXPECT_EQ(array.UpperBound(), upper);
    EXPECT_EQ(FaultOf([&] { return array.TextElements(); }), 9) << lower << " to " << upper;
  }
}

// Otherwise code that trusts the bounds would read past the elements.
TEST(ByteArrayTest, BoundsThatDoNotMatchTheElementsAreOutOfRange) {
  for (const auto& [lower, upper] :
       {std::pair{0, 4}, {0, 2}, {0, -1}, {0, 100'000'000}, {INT32_MIN, INT32_MAX}, {2, -2}}) {
    const auto make = [&, low = lower, high = upper] {
      return ByteArray::WithShape(1, low, high, kElements);
    };
    EXPECT_EQ(FaultOf(make), 9) << lower << " to " << upper;
  }
}

TEST(ByteArrayTest, SeveralDimensionsAreOutOfRange) {
  const ByteArray array = ByteArray::WithShape(2, 0, 1, kElements);
  EXPECT_EQ(array.Dimensions(), 2);
  EXPECT_EQ(FaultOf([&] { return array.UpperBound(); }), 9);
  EXPECT_EQ(FaultOf([&] { return array.TextElements(); }), 9);
}

TEST(ByteArrayTest, AnErasedArrayIsUnallocated) {
  ByteArray array = ByteArray::WithShape(1, -1, 2, kElements);
  array.Erase();
  EXPECT_EQ(array, ByteArray());
  EXPECT_EQ(array.LowerBound(), 0);
}

TEST(ByteArrayTest, EqualityComparesShapeAndElements) {
  EXPECT_EQ((ByteArray{1, 2}), ByteArray(Bytes{1, 2}));
  EXPECT_FALSE((ByteArray{1, 2}) == (ByteArray{1, 3}));
  EXPECT_FALSE((ByteArray{1, 2}) == ByteArray::WithShape(1, 1, 2, Bytes{1, 2}));
  EXPECT_FALSE((ByteArray{1, 2}) == ByteArray::WithShape(2, 0, 1, Bytes{1, 2}));
}

TEST(ByteArrayTest, ACopyDoesNotShareElements) {
  ByteArray array{1, 2};
  const ByteArray copy = array;
  array.Erase();
  EXPECT_EQ(ElementsOf(copy), (Bytes{1, 2}));
}

TEST(ByteArrayTest, AMovedFromArrayIsUnallocated) {
  ByteArray array = ByteArray::WithShape(1, -1, 2, kElements);
  ByteArray moved = std::move(array);
  EXPECT_EQ(moved, ByteArray::WithShape(1, -1, 2, kElements));
  EXPECT_EQ(array, ByteArray());
  array = std::move(moved);
  EXPECT_EQ(array, ByteArray::WithShape(1, -1, 2, kElements));
  EXPECT_EQ(moved, ByteArray());
}

TEST(ByteArrayTest, SelfAssignmentKeepsTheArray) {
  ByteArray array{1, 2};
  const ByteArray& same = array;
  array = same;
  EXPECT_EQ(array, (ByteArray{1, 2}));
}

TEST(ByteArrayTest, AnUnallocatedArrayAllocatesNothing) {
  ByteArray from;
  FailAllocation(1);
  ByteArray array(from);
  array = from;
  array = std::move(from);
  EXPECT_EQ(array, ByteArray::WithShape(0, 0, -1, {}));
  EXPECT_TRUE(AllocationFailurePending());
  FailAllocation(0);
}

TEST(ByteArrayTest, AssignmentWithoutMemoryKeepsTheOldArray) {
  const ByteArray large = ArrayOf(SampleBytes(1000));
  ByteArray array{1, 2};
  FailAllocation(1);
  EXPECT_THROW(array = large, std::bad_alloc);
  EXPECT_EQ(array, (ByteArray{1, 2}));
}

// Freeing wipes the memory; memory that is kept would hold the secret until the array is destroyed.
TEST(ByteArrayTest, EraseFreesTheMemory) {
  const long before = LiveBlocks();
  ByteArray array = ArrayOf(SampleBytes(1000));
  EXPECT_GT(LiveBlocks(), before);
  array.Erase();
  EXPECT_EQ(LiveBlocks(), before);
}

}  // namespace
}  // namespace latchkey::test
