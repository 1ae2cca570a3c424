#include "crypto/byte_array_text.h"

#include <gtest/gtest.h>

#include "tests/support/bytes.h"
#include "tests/support/code_pages.h"
#include "tests/support/fault_of.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

class ByteArrayTextTest : public testing::Test {
 protected:
  static Bytes TextOf(const ByteArray& array) {
    const auto text = TextBytesOf(array.TextElements());
    return {text.begin(), text.end()};
  }

  ModuleScope scope;
};

TEST_F(ByteArrayTextTest, OmitsTheLastElementAndTrailingSpaces) {
  EXPECT_EQ(TextOf({65, 66, 67}), BytesOf("AB"));
  EXPECT_EQ(TextOf({32, 65, 32, 32, 0}), BytesOf(" A"));
  EXPECT_EQ(TextOf({32, 32, 32, 0}), Bytes());
  EXPECT_EQ(TextOf({65, 9, 0}), BytesOf("A\t"));
  EXPECT_EQ(TextOf({65, 32, 0, 0}), (Bytes{65, 32, 0}));
  EXPECT_EQ(TextOf({0}), Bytes());
}

TEST_F(ByteArrayTextTest, KeepsEveryByteOnADoubleBytePage) {
  scope.Services().codePage = &DoubleBytePage();
  EXPECT_EQ(TextOf({0x82, 0xFF, 0x00, 0xB1, 0}), (Bytes{0x82, 0xFF, 0x00, 0xB1}));
}

TEST_F(ByteArrayTextTest, AnArrayOfAnotherShapeIsOutOfRange) {
  EXPECT_EQ(FaultOf([] { return TextOf(ByteArray()); }), 9);
  EXPECT_EQ(FaultOf([] { return TextOf(ByteArray::WithShape(1, 1, 2, Bytes{65, 66})); }), 9);
  EXPECT_EQ(FaultOf([] { return TextOf(ByteArray::WithShape(2, 0, 1, Bytes{65, 66})); }), 9);
}

}  // namespace
}  // namespace latchkey::test
