// Bytes that are wiped before their storage is let go.
#include "base/working_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <utility>

#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kLong = WorkingBytes::kShort + 1;

class WorkingBytesTest : public testing::TestWithParam<std::size_t> {
 protected:
  static WorkingBytes Filled() { return WorkingBytes(SampleBytes(GetParam())); }

  static Bytes ContentOf(const WorkingBytes& bytes) {
    return {bytes.All().begin(), bytes.All().end()};
  }
};

INSTANTIATE_TEST_SUITE_P(Lengths, WorkingBytesTest,
                         testing::Values(0, 1, WorkingBytes::kShort, kLong, 5000));

TEST_P(WorkingBytesTest, CopiesAndMovesItsContent) {
  WorkingBytes bytes = Filled();
  WorkingBytes copy(bytes);
  EXPECT_EQ(ContentOf(copy), SampleBytes(GetParam()));
  const WorkingBytes moved(std::move(bytes));
  EXPECT_EQ(moved, copy);
  WorkingBytes assigned(kLong);
  assigned = std::move(copy);
  EXPECT_EQ(assigned, moved);
  assigned = WorkingBytes(3);
  assigned = moved;
  EXPECT_EQ(assigned, moved);
}

TEST_P(WorkingBytesTest, RenewedBytesAreWipedInTheStorageAtHand) {
  WorkingBytes bytes = Filled();
  const std::uint8_t* const memory = bytes.data();
  bytes.Renew(GetParam());
  EXPECT_EQ(bytes.data(), memory);
  EXPECT_EQ(ContentOf(bytes), Bytes(GetParam(), 0));
}

TEST_P(WorkingBytesTest, AShorterCutStillWipesWhatWasThere) {
  WorkingBytes bytes = Filled();
  bytes.Cut(1);
  EXPECT_EQ(bytes.size(), std::min<std::size_t>(GetParam(), 1));
  bytes.Renew(GetParam());
  EXPECT_EQ(ContentOf(bytes), Bytes(GetParam(), 0));
}

// A content that was never touched is not wiped: that is how untouched memory shows.
TEST(WorkingBytesTest, OnlyTouchedBytesAreWiped) {
  WorkingBytes bytes(SampleBytes(5000));
  bytes.Touched(4000);
  bytes.Renew(5000);
  const Bytes content(bytes.All().begin(), bytes.All().end());
  const Bytes sample = SampleBytes(5000);
  EXPECT_EQ(Bytes(content.begin(), content.begin() + 4000), Bytes(4000, 0));
  EXPECT_EQ(Bytes(content.begin() + 4000, content.end()),
            Bytes(sample.begin() + 4000, sample.end()));
}

TEST(WorkingBytesTest, AFewNeedNoMemory) {
  FailAllocation(1);
  const WorkingBytes bytes(WorkingBytes::kShort);
  EXPECT_TRUE(AllocationFailurePending());
  EXPECT_THROW(WorkingBytes{kLong}, std::bad_alloc);
}

TEST(WorkingBytesTest, WithoutMemoryForMoreItIsEmpty) {
  WorkingBytes bytes(SampleBytes(10));
  FailAllocation(1);
  EXPECT_THROW(bytes.Renew(kLong), std::bad_alloc);
  EXPECT_EQ(bytes.size(), 0U);
}

}  // namespace
}  // namespace latchkey::test
