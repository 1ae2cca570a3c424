// Hexadecimal digits in ASCII, beyond the borders of the converter's steps.
#include "base/hex_converter.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace latchkey::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

bool Decodes(std::string_view digits, Bytes& bytes) {
  bytes.assign(digits.size() / 2, 0);
  return HexConverter().Decode(BytesOf(digits), bytes.data());
}

TEST(HexConverterTest, ConvertsAnyLengthThereAndBack) {
  HexConverter converter;
  for (const std::size_t length : {0U, 1U, 255U, 256U, 257U, 511U, 513U, 1025U}) {
    Bytes bytes(length);
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    Bytes digits(2 * length);
    converter.Encode(bytes, digits.data());
    Bytes back(length);
    EXPECT_TRUE(converter.Decode(digits, back.data())) << length;
    EXPECT_EQ(back, bytes) << length;
  }
}

TEST(HexConverterTest, WritesUpperCaseAndReadsBothCases) {
  Bytes digits(4);
  HexConverter().Encode(Bytes{0x0A, 0xF9}, digits.data());
  EXPECT_EQ(digits, BytesOf("0AF9"));
  Bytes bytes;
  EXPECT_TRUE(Decodes("aBCd", bytes));
  EXPECT_EQ(bytes, (Bytes{0xAB, 0xCD}));
}

TEST(HexConverterTest, FindsAnotherCharacterInAnyStep) {
  Bytes bytes;
  for (const std::size_t place : {0U, 511U, 512U, 1999U}) {
    std::string digits(2000, '7');
    for (const char other : {'/', ':', '@', 'G', '`', 'g', ' ', '\0', '\xB1'}) {
      digits[place] = other;
      EXPECT_FALSE(Decodes(digits, bytes)) << place << " " << int{other};
    }
  }
}

}  // namespace
}  // namespace latchkey::test
