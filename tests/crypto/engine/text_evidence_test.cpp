#include "crypto/engine/text_evidence.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

TEST(TextEvidenceTest, TextIsEvidenceForTheKeyAndRandomBytesAreNot) {
  EXPECT_GT(TextEvidence(BytesOf("It is altogether fitting and proper that we should do this.")),
            100);
  EXPECT_GT(TextEvidence(std::vector<std::uint8_t>(64, 0)),
            100);  // not text, but not random either
  std::vector<std::uint8_t> everyByte(256);
  std::iota(everyByte.begin(), everyByte.end(), std::uint8_t{0});
  EXPECT_LT(TextEvidence(everyByte), -1.5);
  EXPECT_GE(TextEvidence(everyByte), -2);
  EXPECT_EQ(TextEvidence({}), 0);
}

// The three kinds of data form one distribution: over all values of a byte, the probabilities sum
// to one.
TEST(TextEvidenceTest, TheProbabilitiesOfAllBytesSumToOne) {
  double sum = 0;
  for (unsigned value = 0; value < 256; ++value) {
    const std::array byte{static_cast<std::uint8_t>(value)};
    sum += std::exp2(TextEvidence(byte)) / 256;
  }
  EXPECT_NEAR(sum, 1, 1e-3);
}

}  // namespace
}  // namespace latchkey::test
