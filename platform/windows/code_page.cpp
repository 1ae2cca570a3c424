#include "platform/code_page.h"

#include <windows.h>

#include <cstddef>

namespace latchkey::platform {
namespace {

// A lead byte, or a byte that is part of a longer UTF-8 sequence, denotes nothing by itself. The
// bytes that Windows-1252 leaves undefined do convert: to the control characters of their value.
std::int32_t CharacterOfByte(std::uint8_t byte) {
  if (IsDBCSLeadByteEx(CP_ACP, byte)) return CodePage::kNoCharacter;
  const char narrow = static_cast<char>(byte);
  std::array<wchar_t, 2> wide{};
  const int count = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &narrow, 1, wide.data(),
                                        static_cast<int>(wide.size()));
  return count == 1 ? static_cast<std::int32_t>(wide[0]) : CodePage::kNoCharacter;
}

CodePage::ByteTable AnsiTable() {
  CodePage::ByteTable table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = CharacterOfByte(static_cast<std::uint8_t>(byte));
  }
  return table;
}

// No best fit: a character that merely resembles one of the code page is not that one. UTF-8 has
// every character but unpaired surrogates, and its conversion refuses the other form's arguments.
std::uint32_t LongAnsiCode(char16_t character) {
  const wchar_t wide = character;
  std::array<char, 8> bytes{};
  const auto size = static_cast<int>(bytes.size());
  BOOL replaced = FALSE;
  const int count = GetACP() == CP_UTF8
                        ? WideCharToMultiByte(CP_ACP, WC_ERR_INVALID_CHARS, &wide, 1, bytes.data(),
                                              size, nullptr, nullptr)
                        : WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, &wide, 1, bytes.data(),
                                              size, nullptr, &replaced);
  if (count <= 0 || count > 4 || replaced != FALSE) return CodePage::kDefaultCode;
  std::uint32_t code = 0;
  for (int i = 0; i < count; ++i) {
    code = code << 8 | static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]);
  }
  return code;
}

}  // namespace

const CodePage& SystemCodePage() {
  static const CodePage codePage(AnsiTable(), LongAnsiCode);
  return codePage;
}

}  // namespace latchkey::platform
