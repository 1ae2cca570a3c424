#include "platform/windows/wide_text.h"

#include <windows.h>

namespace latchkey::platform {

std::wstring Widened(std::string_view utf8) {
  const auto length = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');
  const int count =
      utf8.empty() ? 0 : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), length);
  wide.resize(static_cast<std::size_t>(count));
  return wide;
}

std::string Narrowed(std::wstring_view wide) {
  const auto length = static_cast<int>(wide.size());
  std::string utf8(wide.size() * 3, '\0');
  const int count = wide.empty()
                        ? 0
                        : WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(),
                                              static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(count));
  return utf8;
}

}  // namespace latchkey::platform
