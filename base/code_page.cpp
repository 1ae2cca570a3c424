#include "base/code_page.h"

#include <cstddef>

namespace latchkey {
namespace {

constexpr std::size_t kHighHalf = 0x80;

}  // namespace

CodePage::CodePage(const HighHalf& characters, LongCodeOf longCodeOf) : longCodeOf_(longCodeOf) {
  for (std::size_t byte = 0; byte < kHighHalf; ++byte) Assign(byte, static_cast<char16_t>(byte));
  for (std::size_t i = 0; i < characters.size(); ++i) {
    if (!IsOneByte(characters[i])) Assign(kHighHalf + i, characters[i]);
  }
  // These come last, so that they take no character from another byte.
  for (std::size_t byte = kHighHalf; byte < characters_.size(); ++byte) {
    if (characters_[byte] == 0) Assign(byte, FreeCharacterFor(byte));
  }
}

void CodePage::Assign(std::size_t byte, char16_t character) noexcept {
  characters_[byte] = character;
  bytes_[character] = static_cast<std::uint8_t>(byte);
}

char16_t CodePage::FreeCharacterFor(std::size_t byte) const noexcept {
  auto character = static_cast<char16_t>(byte);
  if (!IsOneByte(character)) return character;
  constexpr char16_t kPrivateUse = 0xE000;
  for (character = kPrivateUse; IsOneByte(character);) ++character;
  return character;
}

}  // namespace latchkey
