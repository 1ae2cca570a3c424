#include "crypto/hexadecimal.h"

#include <gtest/gtest.h>

#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

Bytes DecodedPairs(TextView text, std::size_t count) {
  Bytes bytes(count, 0xEE);
  DecodeHex(text, bytes);
  return bytes;
}

TEST(HexadecimalTest, EncodesEveryByteInUpperCase) {
  Text text = u"earlier";
  EncodeHex(Bytes{0x00, 0x09, 0x0A, 0x90, 0xAF, 0xFF}, text);
  EXPECT_EQ(text, u"00090A90AFFF");
}

TEST(HexadecimalTest, EncodesNoBytesAsEmptyText) {
  Text text = u"earlier";
  EncodeHex({}, text);
  EXPECT_EQ(text, u"");
}

TEST(HexadecimalTest, DecodesWhatItEncodes) {
  Bytes bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<std::uint8_t>(byte));
  Text text;
  EncodeHex(bytes, text);
  EXPECT_EQ(DecodedPairs(text, bytes.size()), bytes);
}

// Lengths around the size of the pieces that are converted at a time.
TEST(HexadecimalTest, ConvertsAllElementsOfEveryLength) {
  for (const std::size_t length : {1U, 63U, 511U, 512U, 513U, 1024U, 1500U}) {
    const Bytes bytes = SampleBytes(length);
    Text text;
    EncodeHex(bytes, text);
    EXPECT_EQ(text, Wide(Hex(bytes))) << length;
    EXPECT_EQ(DecodedPairs(text, length), bytes) << length;
  }
}

TEST(HexadecimalTest, AnUnusualPairDoesNotChangeTheOthers) {
  const Bytes bytes = SampleBytes(1500);
  for (const std::size_t position : {0U, 511U, 512U, 1023U, 1499U}) {
    Text text = Wide(Hex(bytes));
    text[2 * position] = u'7';
    text[2 * position + 1] = u'\u0137';  // its low byte is a digit
    Bytes expected = bytes;
    expected[position] = 7;
    EXPECT_EQ(DecodedPairs(text, bytes.size()), expected) << position;
  }
}

TEST(HexadecimalTest, DecodesEachPairSeparately) {
  EXPECT_EQ(DecodedPairs(u"7GzzFf 1", 4), (Bytes{0x07, 0x00, 0xFF, 0x01}));
}

}  // namespace
}  // namespace latchkey::test
