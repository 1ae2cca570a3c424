#include "tests/support/code_pages.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>

namespace latchkey::test {
namespace {

template <class CharacterOf>
CodePage::HighHalf HighHalfOf(CharacterOf characterOf) {
  CodePage::HighHalf characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    characters[i] = static_cast<char16_t>(characterOf(0x80 + i));
  }
  return characters;
}

std::uint32_t NoLongCode(char16_t /*character*/) { return CodePage::kDefaultCode; }

std::size_t OneToOneCharacter(std::size_t byte) { return byte == 0x80 ? 0x20AC : 0x400 + byte; }

std::size_t DoubleByteCharacter(std::size_t byte) {
  return byte >= 0xA1 && byte <= 0xDF ? 0xFF61 + byte - 0xA1 : 0;
}

std::uint32_t DoubleByteCode(char16_t character) {
  return character == 0x3042 ? 0x82A0 : CodePage::kDefaultCode;
}

// The bytes of RFC 3629, section 3, as one number.
std::uint32_t Utf8Code(char16_t character) {
  const auto code = static_cast<std::uint32_t>(character);
  if (code >= 0xD800 && code <= 0xDFFF) return 0xEFBFBD;
  const std::uint32_t last = 0x80 | (code & 0x3F);
  if (code < 0x800) return (0xC0 | code >> 6) << 8 | last;
  return (0xE0 | code >> 12) << 16 | (0x80 | (code >> 6 & 0x3F)) << 8 | last;
}

}  // namespace

const CodePage& OneToOnePage() {
  static const CodePage page(HighHalfOf(OneToOneCharacter), NoLongCode);
  return page;
}

const CodePage& DoubleBytePage() {
  static const CodePage page(HighHalfOf(DoubleByteCharacter), DoubleByteCode);
  return page;
}

const CodePage& Utf8Page() {
  static const CodePage page({}, Utf8Code);
  return page;
}

void ExpectOneToOne(const CodePage& page) {
  std::set<char16_t> characters;
  for (unsigned byte = 0; byte < 256; ++byte) {
    const char16_t character = page.CharacterOf(static_cast<std::uint8_t>(byte));
    EXPECT_TRUE(characters.insert(character).second) << byte;
    EXPECT_EQ(page.CodeOf(character), byte);
  }
}

}  // namespace latchkey::test
