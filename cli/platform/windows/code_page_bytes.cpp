#include "cli/platform/windows/code_page_bytes.h"

#include <windows.h>

#include "cli/platform/file_error.h"
#include "platform/system_code_page.h"

namespace latchkey::cli {

WipedBytes CodePageBytes(std::span<const wchar_t> text, const std::string& name) {
  const CodePage& codePage = platform::SystemCodePage();
  WipedBytes bytes;
  bytes.reserve(text.size());
  for (const wchar_t character : text) {
    const std::uint32_t code = codePage.CodeOf(static_cast<char16_t>(character));
    const bool isMissing = code == CodePage::kDefaultCode && character != L'?';
    if (isMissing || code > 0xFF) {
      throw FileError(ERROR_NO_UNICODE_TRANSLATION, "cannot read", name);
    }
    bytes.push_back(static_cast<std::uint8_t>(code));
  }
  return bytes;
}

}  // namespace latchkey::cli
