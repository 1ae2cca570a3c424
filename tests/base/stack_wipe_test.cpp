// Data that returned functions left on the stack.
#include "base/stack_wipe.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace latchkey::test {
namespace {

constexpr std::size_t kTraceLength = 64;
constexpr std::uint8_t kTrace = 0xA5;

// Leaves data on the stack and returns its address.
[[gnu::noinline]] std::uintptr_t LeaveTrace() {
  volatile std::array<std::uint8_t, kTraceLength> trace{};
  for (std::size_t i = 0; i < kTraceLength; ++i) {
    const_cast<std::array<std::uint8_t, kTraceLength>&>(trace)[i] = kTrace;
  }
  // Through the assembler, since compilers warn about the address of a local variable.
  std::uintptr_t place = 0;
  asm volatile("" : "=r"(place) : "0"(&trace) : "memory");
  return place;
}

// The same with much of the stack between.
template <std::size_t size>
[[gnu::noinline]] std::uintptr_t LeaveTraceFarBelow() {
  std::array<std::uint8_t, size> between{};
  asm volatile("" ::"r"(between.data()) : "memory");
  const std::uintptr_t place = LeaveTrace();
  asm volatile("" ::"r"(between.data()) : "memory");
  return place;
}

// The remaining bytes of the data. Reads memory that no longer belongs to an object.
[[gnu::noinline]] std::size_t TraceLeft(std::uintptr_t place) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the stack of this thread
  const auto* const trace = reinterpret_cast<const volatile std::uint8_t*>(place);
  std::size_t left = 0;
  for (std::size_t i = 0; i < kTraceLength; ++i) left += trace[i] == kTrace ? 1U : 0U;
  return left;
}

TEST(StackWipeTest, DataStaysUntilItIsWiped) {
  const std::uintptr_t place = LeaveTrace();
  EXPECT_GT(TraceLeft(place), 0U);
}

TEST(StackWipeTest, WipesBelowTheFrame) {
  const std::uintptr_t place = LeaveTrace();
  WipeStackBelow();
  EXPECT_EQ(TraceLeft(place), 0U);
}

TEST(StackWipeTest, WipesBelowTheFrameOfBatches) {
  const std::uintptr_t place = LeaveTraceFarBelow<7 * 1024>();
  WipeStackBelowBatches();
  EXPECT_EQ(TraceLeft(place), 0U);
}

TEST(StackWipeTest, WipesFarBelowTheFrame) {
  const std::uintptr_t place = LeaveTraceFarBelow<12 * 1024>();
  WipeStackFarBelow();
  EXPECT_EQ(TraceLeft(place), 0U);
}

}  // namespace
}  // namespace latchkey::test
