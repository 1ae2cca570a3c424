#include "base/code_page.h"

#include <gtest/gtest.h>

#include "tests/support/code_pages.h"

namespace latchkey::test {
namespace {

std::uint32_t NoLongCode(char16_t /*character*/) { return CodePage::kDefaultCode; }

TEST(CodePageTest, EveryByteHasADifferentCharacter) {
  ExpectOneToOne(OneToOnePage());
  ExpectOneToOne(DoubleBytePage());
  ExpectOneToOne(Utf8Page());
}

TEST(CodePageTest, TheLowerOfTwoBytesKeepsTheirCharacter) {
  CodePage::HighHalf characters{};
  characters[0] = 0x20AC;
  characters[1] = 0x20AC;
  const CodePage page(characters, NoLongCode);
  EXPECT_EQ(page.CharacterOf(0x80), 0x20AC);
  EXPECT_EQ(page.CharacterOf(0x81), 0x81);
  ExpectOneToOne(page);
}

TEST(CodePageTest, AByteGetsAPrivateUseCharacterWhenItsNumberIsTaken) {
  CodePage::HighHalf characters{};
  characters[0] = 0x82;
  characters[1] = u'A';  // the character of byte 41
  characters[2] = 0;
  characters[3] = 0xE000;
  const CodePage page(characters, NoLongCode);
  EXPECT_EQ(page.CharacterOf(0x80), 0x82);
  EXPECT_EQ(page.CharacterOf(0x81), 0x81);
  EXPECT_EQ(page.CharacterOf(0x82), 0xE001);
  EXPECT_EQ(page.CharacterOf(0x83), 0xE000);
  ExpectOneToOne(page);
}

TEST(CodePageTest, TheByteTableOverridesLongCodes) {
  const CodePage page({}, [](char16_t) { return std::uint32_t{0x82A0}; });
  EXPECT_EQ(page.CodeOf(0xD7), 0xD7U);
  EXPECT_EQ(page.CodeOf(0x100), 0x82A0U);
}

TEST(CodePageTest, UsesLongCodesForOtherCharacters) {
  EXPECT_EQ(DoubleBytePage().CodeOf(0x3042), 0x82A0U);
  EXPECT_EQ(DoubleBytePage().CodeOf(0x3043), 63U);
  EXPECT_EQ(Utf8Page().CodeOf(0x0100), 0xC480U);
}

}  // namespace
}  // namespace latchkey::test
