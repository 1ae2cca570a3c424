#include "crypto/shaped_bytes.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"

namespace latchkey::test {
namespace {

TEST(ShapedBytesTest, FewElementsAllocateNothing) {
  FailAllocation(1);
  const ShapedBytes password{1, 2, 3};
  ShapedBytes copy = password;
  copy = ShapedBytes::WithTrailingZero(std::span(password.Elements()).first(2));
  copy = ShapedBytes{0};
  EXPECT_TRUE(AllocationFailurePending());
  FailAllocation(0);
}

TEST(ShapedBytesTest, TakeStorageReturnsTheStorage) {
  ShapedBytes array(SampleBytes(1001));
  const std::uint8_t* const memory = array.Elements().data();
  InlineBytes storage = array.TakeStorage();
  EXPECT_EQ(array, ShapedBytes());
  EXPECT_EQ(storage.size(), 1001U);
  storage.Renew(500);
  EXPECT_EQ(ShapedBytes::WithTrailingZero(std::move(storage), 499).Elements().data(), memory);
}

TEST(ShapedBytesTest, ToByteArrayKeepsShapeAndStorage) {
  ShapedBytes array = ShapedBytes::WithShape(1, -1, 999, SampleBytes(1001));
  const std::uint8_t* const memory = array.Elements().data();
  const ByteArray made = std::move(array).ToByteArray();
  EXPECT_EQ(made, ByteArray::WithShape(1, -1, 999, SampleBytes(1001)));
  EXPECT_EQ(made.Elements().data(), memory);
}

TEST(ShapedBytesTest, ToByteArrayAllocatesNothingWhenUnallocated) {
  FailAllocation(1);
  EXPECT_EQ(ShapedBytes().ToByteArray(), ByteArray());
  EXPECT_TRUE(AllocationFailurePending());
  FailAllocation(0);
}

}  // namespace
}  // namespace latchkey::test
