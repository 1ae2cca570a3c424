#include "platform/system_code_page.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/support/code_pages.h"

namespace latchkey::test {
namespace {

TEST(SystemCodePageTest, EveryByteHasADifferentCharacter) {
  ExpectOneToOne(platform::SystemCodePage());
}

// The system's page is Windows-1252 on every machine the tests run on.
TEST(SystemCodePageTest, HasTheCharactersOfWindows1252) {
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

TEST(SystemCodePageTest, UndefinedBytesAreControlCharacters) {
  const CodePage& page = platform::SystemCodePage();
  for (const char16_t control : {u'\x81', u'\x8D', u'\x8F', u'\x90', u'\x9D'}) {
    EXPECT_EQ(page.CharacterOf(static_cast<std::uint8_t>(control)), control);
    EXPECT_EQ(page.CodeOf(control), control);
  }
}

TEST(SystemCodePageTest, DoesNotMapSimilarCharacters) {
  const CodePage& page = platform::SystemCodePage();
  for (const char16_t character : {u'\u0100', u'\u0391', u'\uFF21', u'\u2215'}) {
    EXPECT_EQ(page.CodeOf(character), 63U) << static_cast<unsigned>(character);
  }
}

}  // namespace
}  // namespace latchkey::test
