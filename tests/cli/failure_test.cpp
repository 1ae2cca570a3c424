#include "cli/failure.h"

#include <gtest/gtest.h>

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

TEST(FailureLineTest, LocationAndNumberPrecedeTheFile) {
  EXPECT_EQ(FailureLine(FailureAt(check::kDecryptCipher, "FILE")),
            "latchkey: Error decrypting data (location 717, number 120): FILE");
  EXPECT_EQ(FailureLine(FailureOf(Fault(FaultNumber::OutOfMemory))),
            "latchkey: Out of memory (number 7)");
  EXPECT_EQ(FailureLine(WrongUsage("so not").Get()), "latchkey: so not");
}

}  // namespace
}  // namespace latchkey::test
