#include "cli/platform/environment.h"

#include <gtest/gtest.h>

#include <string>

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

// CMakeLists.txt sets the variable for the test.
TEST(TakeVariableTest, RemovesTheVariable) {
  const auto taken = TakeVariable("LATCHKEY_TEST_SECRET", TextForm::Bytes);
  ASSERT_TRUE(taken);
  EXPECT_EQ(std::string(taken->begin(), taken->end()), "secret value");
  EXPECT_FALSE(TakeVariable("LATCHKEY_TEST_SECRET", TextForm::Bytes));
}

}  // namespace
}  // namespace latchkey::test
