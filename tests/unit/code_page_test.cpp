#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/support/code_pages.h"

namespace latchkey::test {
namespace {

using platform::CodePage;

TEST(CodePageTest, KnowsWhichPagesKeepEveryByte) {
  EXPECT_TRUE(OneToOnePage().MapsEveryByte());
  EXPECT_FALSE(DoubleBytePage().MapsEveryByte());
  EXPECT_FALSE(Utf8Page().MapsEveryByte());
  EXPECT_FALSE(TwoBytesOneCharacterPage().MapsEveryByte());
}

TEST(CodePageTest, SeesTwoBytesOfOneCharacterBelow256Too) {
  CodePage::ByteTable table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = static_cast<std::int32_t>(byte);
  }
  table[0x91] = 0x90;
  const CodePage page(table, [](char16_t) { return CodePage::kDefaultCode; });
  EXPECT_FALSE(page.MapsEveryByte());
  EXPECT_EQ(page.CodeOf(0x90), 0x90U);
  EXPECT_EQ(page.CodeOf(0x91), 63U);
}

TEST(CodePageTest, KnowsWhichPagesKeepAscii) {
  EXPECT_TRUE(OneToOnePage().KeepsAscii());
  CodePage::ByteTable table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = static_cast<std::int32_t>(byte);
  }
  table[0x5C] = 0xA5;
  const CodePage page(table, [](char16_t) { return CodePage::kDefaultCode; });
  EXPECT_FALSE(page.KeepsAscii());
}

TEST(CodePageTest, OfTwoBytesTheLowerIsTheCode) {
  EXPECT_EQ(TwoBytesOneCharacterPage().CodeOf(0x20AC), 0x80U);
}

TEST(CodePageTest, ALeadByteIsNoCharacter) {
  EXPECT_EQ(DoubleBytePage().CharacterOf(0x82), CodePage::kNoCharacter);
  EXPECT_EQ(DoubleBytePage().CharacterOf(0x41), 0x41);
}

TEST(CodePageTest, LongCodesAreAsked) {
  EXPECT_EQ(DoubleBytePage().CodeOf(0x3042), 0x82A0U);
  EXPECT_EQ(DoubleBytePage().CodeOf(0x3043), 63U);
  EXPECT_EQ(Utf8Page().CodeOf(0x00E9), 0xC3A9U);
}

// The system's page is Windows-1252 on every machine the tests run on.
TEST(SystemCodePageTest, KeepsEveryByte) {
  EXPECT_TRUE(platform::SystemCodePage().MapsEveryByte());
}

TEST(SystemCodePageTest, DenotesTheCharactersOfWindows1252) {
  const std::vector<std::pair<std::uint8_t, char16_t>> samples{
      {0x00, u'\0'},  {0x41, u'A'},   {0x7F, 0x7F},   {0x80, 0x20AC},
      {0x83, 0x0192}, {0x8C, 0x0152}, {0x99, 0x2122}, {0x9F, 0x0178},
      {0xA0, 0x00A0}, {0xE9, 0x00E9}, {0xFF, 0x00FF}};
  const CodePage& page = platform::SystemCodePage();
  for (const auto& [byte, character] : samples) {
    EXPECT_EQ(page.CharacterOf(byte), character) << int{byte};
    EXPECT_EQ(page.CodeOf(character), byte) << int{byte};
  }
}

TEST(SystemCodePageTest, ItsUndefinedBytesAreControlCharacters) {
  const CodePage& page = platform::SystemCodePage();
  for (const char16_t control : {u'\x81', u'\x8D', u'\x8F', u'\x90', u'\x9D'}) {
    EXPECT_EQ(page.CharacterOf(static_cast<std::uint8_t>(control)), control);
    EXPECT_EQ(page.CodeOf(control), control);
  }
}

TEST(SystemCodePageTest, ACharacterThatMerelyResemblesOneIsAnother) {
  const CodePage& page = platform::SystemCodePage();
  for (const char16_t character : {u'\u0100', u'\u0391', u'\uFF21', u'\u2215'}) {
    EXPECT_EQ(page.CodeOf(character), 63U) << static_cast<unsigned>(character);
  }
}

}  // namespace
}  // namespace latchkey::test
