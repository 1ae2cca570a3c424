// Encrypt and Decrypt of an input whose double length does not fit a signed 32-bit number.
//
// The array's memory is never written, so the system does not provide any; the object's copy takes
// 1 GiB.
#include <gtest/gtest.h>

#include "crypto/shaped_bytes.h"
#include "tests/support/cipher_direction.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

ByteArray LargeArray(std::size_t length) {
  InlineBytes zeros(length + 1);
  zeros.LimitWipeTo(0);
  return ShapedBytes::WithTrailingZero(std::move(zeros), length).ToByteArray();
}

using LargeInputTest = WatchedServiceOnPlainProvider;

TEST_F(LargeInputTest, ABufferOfTwiceTheLengthOverflowsAfterTheKeyIsDerived) {
  api.InputData(LargeArray(std::size_t{1} << 30));
  for (const DirectionRow& row : {kEncryptRow, kDecryptRow}) {
    LeaveEarlierFailure();
    EXPECT_FALSE((api.*row.operation)(1, 1));
    EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(row.bodyTrap, 6, "Overflow"));
    EXPECT_EQ(ElementsOf(api.OutputData()), row.outputAfterFailure);
    EXPECT_EQ(journal.Count("CryptDeriveKey"), 1U);
    EXPECT_EQ(journal.Count(row.cipherCall), 0U);
  }
}

}  // namespace
}  // namespace latchkey::test
