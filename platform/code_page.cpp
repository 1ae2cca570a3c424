#include "platform/code_page.h"

#include <algorithm>

namespace latchkey::platform {
namespace {

constexpr std::size_t kAsciiCodes = 0x80;

}  // namespace

CodePage::CodePage(const ByteTable& characters, LongCodeOf longCodeOf)
    : characters_(characters), longCodeOf_(longCodeOf) {
  lowCodes_.fill(kNoCode);
  bool unique = true;
  // From the highest byte down, so that of two bytes with one character the lower one stays.
  for (std::size_t byte = characters.size(); byte-- > 0;) {
    const std::int32_t character = characters[byte];
    if (character == kNoCharacter) {
      unique = false;
    } else if (static_cast<std::size_t>(character) < lowCodes_.size()) {
      auto& code = lowCodes_[static_cast<std::size_t>(character)];
      unique = unique && code == kNoCode;
      code = static_cast<std::int32_t>(byte);
    } else {
      highCodes_.emplace_back(static_cast<char16_t>(character), static_cast<std::uint8_t>(byte));
    }
  }
  std::sort(highCodes_.begin(), highCodes_.end());
  const auto sameCharacter = [](const auto& a, const auto& b) { return a.first == b.first; };
  unique = unique && std::adjacent_find(highCodes_.begin(), highCodes_.end(), sameCharacter) ==
                         highCodes_.end();
  mapsEveryByte_ = unique;
  for (std::size_t code = 0; code < kAsciiCodes; ++code) {
    const auto same = static_cast<std::int32_t>(code);
    keepsAscii_ = keepsAscii_ && characters_[code] == same && lowCodes_[code] == same;
  }
}

std::uint32_t CodePage::OtherCodeOf(char16_t character) const noexcept {
  const auto found =
      std::lower_bound(highCodes_.begin(), highCodes_.end(), character,
                       [](const auto& entry, char16_t wanted) { return entry.first < wanted; });
  if (found != highCodes_.end() && found->first == character) return found->second;
  return longCodeOf_(character);
}

}  // namespace latchkey::platform
