// The codes of a Windows code page, queried from the system one by one.
#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/code_page_tables.h"
#include "platform/system_code_page.h"

namespace latchkey::platform {
namespace {

// The bytes of a character, as one big-endian number; kDefaultCode if it has none. Uses no best-fit
// mapping to similar characters. UTF-8 has every character, writes EF BF BD for a surrogate alone,
// and refuses the arguments of the other call.
std::uint32_t CodeOf(UINT page, char16_t character) {
  const wchar_t wide = character;
  std::array<char, 8> bytes{};
  const auto size = static_cast<int>(bytes.size());
  BOOL replaced = FALSE;
  const bool isUtf8 = (page == CP_ACP ? GetACP() : page) == CP_UTF8;
  const int count = WideCharToMultiByte(page, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, &wide, 1,
                                        bytes.data(), size, nullptr, isUtf8 ? nullptr : &replaced);
  if (count <= 0 || count > 4 || replaced != FALSE) return CodePage::kDefaultCode;
  std::uint32_t code = 0;
  for (int i = 0; i < count; ++i) {
    code = code << 8 | static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]);
  }
  return code;
}

// Without MB_ERR_INVALID_CHARS, bytes that the code page leaves undefined also convert, to
// private-use and control characters, and back. A byte that is only part of a longer character
// converts to a replacement, which does not convert back.
char16_t CharacterOfByte(UINT page, std::uint8_t byte) {
  const char narrow = static_cast<char>(byte);
  std::array<wchar_t, 2> wide{};
  const int count =
      MultiByteToWideChar(page, 0, &narrow, 1, wide.data(), static_cast<int>(wide.size()));
  const char16_t character = wide[0];
  return count == 1 && CodeOf(page, character) == byte ? character : char16_t{0};
}

CodePage::HighHalf HighHalfOf(UINT page) {
  CodePage::HighHalf characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    characters[i] = CharacterOfByte(page, static_cast<std::uint8_t>(0x80 + i));
  }
  return characters;
}

// A character that maps to the byte of another character has no code.
std::uint32_t LongCodeOf(UINT page, char16_t character) {
  const std::uint32_t code = CodeOf(page, character);
  return code > 0xFF ? code : CodePage::kDefaultCode;
}

std::uint32_t LongAnsiCode(char16_t character) { return LongCodeOf(CP_ACP, character); }

}  // namespace

const CodePage& SystemCodePage() {
  static const CodePage codePage(HighHalfOf(CP_ACP), LongAnsiCode);
  return codePage;
}

bool ReadCodePage(std::uint32_t number, CodePageTables& tables) {
  if (!IsValidCodePage(number)) return false;
  tables.characters = HighHalfOf(number);
  if (!IsMultiByte(number)) return true;
  for (std::size_t character = 0; character < tables.longCodes.size(); ++character) {
    tables.longCodes.at(character) = LongCodeOf(number, static_cast<char16_t>(character));
  }
  return true;
}

}  // namespace latchkey::platform
