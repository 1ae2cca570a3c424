// The buffer that is wiped before its storage is released.
#include "base/wiped_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <utility>

#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kLong = InlineBytes::kInlineCapacity + 1;

class WipedBufferTest : public testing::TestWithParam<std::size_t> {
 protected:
  static InlineBytes Filled() { return InlineBytes(SampleBytes(GetParam())); }

  static Bytes ContentOf(const InlineBytes& bytes) {
    return {bytes.All().begin(), bytes.All().end()};
  }
};

INSTANTIATE_TEST_SUITE_P(Lengths, WipedBufferTest,
                         testing::Values(0, 1, InlineBytes::kInlineCapacity, kLong, 5000));

TEST_P(WipedBufferTest, CopiesAndMovesItsContents) {
  InlineBytes bytes = Filled();
  InlineBytes copy(bytes);
  EXPECT_EQ(ContentOf(copy), SampleBytes(GetParam()));
  const InlineBytes moved(std::move(bytes));
  EXPECT_EQ(moved, copy);
  InlineBytes assigned(kLong);
  assigned = std::move(copy);
  EXPECT_EQ(assigned, moved);
  assigned = InlineBytes(3);
  assigned = moved;
  EXPECT_EQ(assigned, moved);
}

TEST_P(WipedBufferTest, RenewWipesInTheSameStorage) {
  InlineBytes bytes = Filled();
  const std::uint8_t* const memory = bytes.data();
  bytes.Renew(GetParam());
  EXPECT_EQ(bytes.data(), memory);
  EXPECT_EQ(ContentOf(bytes), Bytes(GetParam(), 0));
}

TEST_P(WipedBufferTest, WipesTheElementsThatCutRemoved) {
  InlineBytes bytes = Filled();
  bytes.Cut(1);
  EXPECT_EQ(bytes.size(), std::min<std::size_t>(GetParam(), 1));
  bytes.Renew(GetParam());
  EXPECT_EQ(ContentOf(bytes), Bytes(GetParam(), 0));
}

// The contents after the limit show that the rest was not written.
TEST(WipedBufferTest, LimitWipeToLeavesTheRestUntouched) {
  InlineBytes bytes(SampleBytes(5000));
  bytes.LimitWipeTo(4000);
  bytes.Renew(5000);
  const Bytes content(bytes.All().begin(), bytes.All().end());
  const Bytes sample = SampleBytes(5000);
  EXPECT_EQ(Bytes(content.begin(), content.begin() + 4000), Bytes(4000, 0));
  EXPECT_EQ(Bytes(content.begin() + 4000, content.end()),
            Bytes(sample.begin() + 4000, sample.end()));
}

TEST(WipedBufferTest, WipesAllBytesOfWideElements) {
  constexpr std::size_t kInline = 4;
  for (const std::size_t size : {kInline, kInline + 1}) {
    WipedBuffer<char16_t, kInline> buffer(size);
    std::ranges::fill(buffer.All(), u'\x7777');
    buffer.Renew(size);
    EXPECT_EQ(std::ranges::count(buffer.All(), u'\0'), std::ssize(buffer.All()));
  }
}

TEST(WipedBufferTest, ShortDataIsNotAllocated) {
  FailAllocation(1);
  const InlineBytes bytes(InlineBytes::kInlineCapacity);
  EXPECT_TRUE(AllocationFailurePending());
  EXPECT_THROW(InlineBytes{kLong}, std::bad_alloc);
}

TEST(WipedBufferTest, IsEmptyAfterAFailedAllocation) {
  InlineBytes bytes(SampleBytes(10));
  FailAllocation(1);
  EXPECT_THROW(bytes.Renew(kLong), std::bad_alloc);
  EXPECT_EQ(bytes.size(), 0U);
}

}  // namespace
}  // namespace latchkey::test
