#include <windows.h>

#include <span>
#include <stdexcept>

#include "tests/system/code_pages/process_page.h"

namespace latchkey::test {
namespace {

// The bytes of a character without best fit; none if the code page lacks it.
std::string BytesOfCharacter(wchar_t character) {
  std::string bytes(8, '\0');
  const auto size = static_cast<int>(bytes.size());
  const bool isUtf8 = GetACP() == CP_UTF8;  // UTF-8 refuses the last argument and the flag
  BOOL replaced = FALSE;
  const int count = WideCharToMultiByte(CP_ACP, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, &character, 1,
                                        bytes.data(), size, nullptr, isUtf8 ? nullptr : &replaced);
  bytes.resize(replaced ? 0 : static_cast<std::size_t>(count));
  return bytes;
}

// The character of the plain conversion if that is one-to-one, otherwise the one of the same
// number.
wchar_t CharacterOfByte(unsigned byte) {
  const char narrow = static_cast<char>(byte);
  wchar_t wide[2] = {};
  const bool isOne = MultiByteToWideChar(CP_ACP, 0, &narrow, 1, wide, 2) == 1;
  return isOne && BytesOfCharacter(wide[0]) == std::string(1, narrow) ? wide[0]
                                                                      : static_cast<wchar_t>(byte);
}

std::uint16_t CodeOfCharacter(wchar_t character) {
  const std::string bytes = BytesOfCharacter(character);
  if (bytes.size() < 2) return u'?';
  return kSeveralBytes | static_cast<unsigned char>(bytes.back());
}

}  // namespace

void UsePage(unsigned number) {
  if (GetACP() != number) {
    throw std::runtime_error("the code page of this process is " + std::to_string(GetACP()));
  }
}

std::optional<VisiblePage> PlatformPage() {
  VisiblePage page;
  for (unsigned character = 0; character < kCharacters; ++character) {
    page.codes.push_back(CodeOfCharacter(static_cast<wchar_t>(character)));
  }
  for (unsigned byte = 0; byte < page.characters.size(); ++byte) {
    page.characters.at(byte) = static_cast<char16_t>(CharacterOfByte(byte));
    page.codes.at(page.characters.at(byte)) = static_cast<std::uint16_t>(byte);
  }
  return page;
}

}  // namespace latchkey::test
