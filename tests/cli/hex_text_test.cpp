#include "cli/hex_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "cli/failure.h"

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

// The bytes of a text that arrives in pieces of that length.
WipedBytes ReadHex(std::string_view text, std::size_t piece) {
  HexReader reader;
  WipedBytes all;
  for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) {
    const std::string_view part = text.substr(0, piece);
    const WipedBytes bytes =
        reader.Read({reinterpret_cast<const std::uint8_t*>(part.data()), part.size()}, "f");
    all.insert(all.end(), bytes.begin(), bytes.end());
  }
  reader.Finish("f");
  return all;
}

TEST(HexReaderTest, WhiteSpaceAndPrefixesAreSkippedWhereverAPieceEnds) {
  const WipedBytes expected{0x41, 0x0B, 0x00, 0xC0};
  for (const char* const text :
       {"410b00C0", "4\r\n1 0\tB 00 c 0\n", "0x410B00C0", "0x41 0X0b 0x00 0xC0",
        R"(\x41\x0B\x00\xc0)", "\\x410B00C0\n", "0x410x0B0x000xC0"}) {
    for (const std::size_t piece : {1U, 2U, 3U, 100U})
      EXPECT_EQ(ReadHex(text, piece), expected) << text;
  }
}

TEST(HexReaderTest, OtherCharactersAndHalfBytesAreRefused) {
  for (const char* const text :
       {"4", "410", "0", "0x4", "40x41", "4x41", "x41", "\\", "41\\", "\\41", "4\\x41", "41,42",
        "0x0x41", "41 0x", "41\\x", "\\x41\\x\n", "\\x\n41\\x"}) {
    for (const std::size_t piece : {1U, 100U})
      EXPECT_THROW((void)ReadHex(text, piece), CommandError) << text;
  }
}

}  // namespace
}  // namespace latchkey::test
