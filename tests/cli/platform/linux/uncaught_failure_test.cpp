#include "cli/platform/uncaught_failure.h"

#include <gtest/gtest.h>

#include <exception>
#include <new>
#include <stdexcept>

namespace latchkey::cli {
namespace {

template <class Raise>
[[noreturn]] void EndAfter(Raise&& raise) noexcept {
  BeginMain();
  raise();
  std::terminate();
}

TEST(UncaughtFailureTest, ReportsLackOfMemoryForAnExceptionOrABadAlloc) {
  const auto line = "latchkey: Out of memory \\(number 7\\)\n$";
  EXPECT_EXIT(EndAfter([] {}), testing::ExitedWithCode(1), line);
  EXPECT_EXIT(EndAfter([] { throw std::bad_alloc(); }), testing::ExitedWithCode(1), line);
}

TEST(UncaughtFailureTest, ReportsOtherExceptionsWithAGeneralMessage) {
  EXPECT_EXIT(EndAfter([] { throw std::runtime_error(""); }), testing::ExitedWithCode(1),
              "latchkey: failed and cannot continue\n$");
}

}  // namespace
}  // namespace latchkey::cli
