// The length of the cipher buffer for an input.
#include "crypto/cipher_buffer.h"

#include <gtest/gtest.h>

#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kFirstTooLong = 0x4000'0000;

TEST(CipherBufferTest, IsTwiceAsLongAsTheInput) {
  EXPECT_EQ(CipherBufferLength(0), 0U);
  EXPECT_EQ(CipherBufferLength(3), 6U);
  EXPECT_EQ(CipherBufferLength(kFirstTooLong - 1), 2 * (kFirstTooLong - 1));
}

TEST(CipherBufferTest, OverflowsFromTwoToTheThirtiethOn) {
  for (const std::size_t length :
       {kFirstTooLong, std::size_t{0x7FFF'FFFF}, std::size_t{0xFFFF'FFFF}}) {
    EXPECT_EQ(FaultOf([length] { return CipherBufferLength(length); }), 6) << length;
  }
}

}  // namespace
}  // namespace latchkey::test
