#include "base/unique_handle.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace latchkey::test {
namespace {

std::vector<int> closed;

struct NumberTrait {
  using Type = int;
  static Type None() { return -1; }
  static void Close(Type handle) noexcept { closed.push_back(handle); }
};
using Handle = UniqueHandle<NumberTrait>;

class UniqueHandleTest : public ::testing::Test {
 protected:
  void SetUp() override { closed.clear(); }
};

using Closed = std::vector<int>;

TEST_F(UniqueHandleTest, ClosesItsHandleOnceOnDestruction) {
  {
    const Handle handle(7);
    EXPECT_TRUE(handle);
    EXPECT_EQ(handle.Get(), 7);
    EXPECT_EQ(closed, Closed{});
  }
  EXPECT_EQ(closed, Closed{7});
}

TEST_F(UniqueHandleTest, DoesNotCloseTheTraitsNone) {
  {
    const Handle handle;
    EXPECT_FALSE(handle);
    EXPECT_EQ(handle.Get(), -1);
    EXPECT_TRUE(Handle(0));
  }
  EXPECT_EQ(closed, Closed{0});
}

TEST_F(UniqueHandleTest, MovingTransfersTheHandle) {
  {
    Handle first(7);
    const Handle second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): what is left is under test
    EXPECT_EQ(second.Get(), 7);
  }
  EXPECT_EQ(closed, Closed{7});
}

TEST_F(UniqueHandleTest, MoveAssignmentClosesTheOldHandle) {
  Handle target(1);
  Handle source(2);
  target = std::move(source);
  EXPECT_EQ(closed, Closed{1});
  EXPECT_EQ(target.Get(), 2);
  EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move): what is left is under test
}

TEST_F(UniqueHandleTest, SelfMoveKeepsTheHandle) {
  Handle handle(7);
  Handle& same = handle;
  handle = std::move(same);
  EXPECT_EQ(handle.Get(), 7);
  EXPECT_EQ(closed, Closed{});
}

TEST_F(UniqueHandleTest, ResetClosesTheOldHandleAndOwnsTheNewOne) {
  Handle handle(1);
  handle.Reset(2);
  EXPECT_EQ(closed, Closed{1});
  EXPECT_EQ(handle.Get(), 2);
  handle.Reset(2);
  EXPECT_EQ(closed, Closed{1});
  handle.Reset();
  EXPECT_EQ(closed, (Closed{1, 2}));
  EXPECT_FALSE(handle);
}

TEST_F(UniqueHandleTest, ReleaseReturnsTheHandleWithoutClosingIt) {
  {
    Handle handle(7);
    EXPECT_EQ(handle.Release(), 7);
    EXPECT_FALSE(handle);
  }
  EXPECT_EQ(closed, Closed{});
}

// Returns a handle as functions of operating systems do.
void Open(int* handle) { *handle = 7; }

TEST_F(UniqueHandleTest, PutOwnsTheHandleWrittenToItsAddress) {
  {
    Handle handle;
    Open(handle.Put());
    EXPECT_EQ(handle.Get(), 7);
    EXPECT_EQ(closed, Closed{});
  }
  EXPECT_EQ(closed, Closed{7});
}

TEST_F(UniqueHandleTest, PutClosesTheOldHandleAndHoldsNoneUntilOneIsWritten) {
  {
    Handle handle(1);
    EXPECT_EQ(*handle.Put(), -1);
    EXPECT_EQ(closed, Closed{1});
    EXPECT_FALSE(handle);
  }
  EXPECT_EQ(closed, Closed{1});
}

TEST_F(UniqueHandleTest, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Handle>);
  EXPECT_FALSE(std::is_copy_assignable_v<Handle>);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<Handle>);
}

}  // namespace
}  // namespace latchkey::test
