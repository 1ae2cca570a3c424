#include "platform/code_page.h"

namespace latchkey::platform {
namespace {

constexpr std::size_t kAsciiCodes = 0x80;

}  // namespace

CodePage::CodePage(const ByteTable& characters, LongCodeOf longCodeOf)
    : characters_(characters), longCodeOf_(longCodeOf) {
  rows_.emplace_back().fill(kNoCode);
  bool unique = true;
  // From the highest byte down, so that of two bytes with one character the lower one stays.
  for (std::size_t byte = characters.size(); byte-- > 0;) {
    if (characters[byte] == kNoCharacter) {
      unique = false;
      continue;
    }
    std::int32_t& code = CodeEntry(static_cast<char16_t>(characters[byte]));
    unique = unique && code == kNoCode;
    code = static_cast<std::int32_t>(byte);
  }
  mapsEveryByte_ = unique;
  for (std::size_t code = 0; code < kAsciiCodes; ++code) {
    keepsAscii_ = keepsAscii_ && characters_[code] == static_cast<std::int32_t>(code) &&
                  CodeOf(static_cast<char16_t>(code)) == code;
  }
}

std::int32_t& CodePage::CodeEntry(char16_t character) {
  std::uint16_t& row = rowOf_[character >> 8];
  if (row == 0) {
    row = static_cast<std::uint16_t>(rows_.size());
    rows_.emplace_back().fill(kNoCode);
  }
  return rows_[row][character & 0xFF];
}

}  // namespace latchkey::platform
