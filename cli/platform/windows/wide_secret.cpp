#include "cli/platform/windows/wide_secret.h"

#include <windows.h>

#include "cli/platform/file_error.h"
#include "cli/text_encoding.h"
#include "platform/system_code_page.h"

namespace latchkey::cli {
namespace {

FileError Untranslatable(const std::string& name) {
  return {ERROR_NO_UNICODE_TRANSLATION, "cannot read", name};
}

WipedBytes CodePageBytes(std::span<const wchar_t> text, const std::string& name) {
  const CodePage& codePage = platform::SystemCodePage();
  WipedBytes bytes;
  bytes.reserve(text.size());
  for (const wchar_t character : text) {
    const std::uint32_t code = codePage.CodeOf(static_cast<char16_t>(character));
    const bool isMissing = code == CodePage::kDefaultCode && character != L'?';
    if (isMissing || code > 0xFF) throw Untranslatable(name);
    bytes.push_back(static_cast<std::uint8_t>(code));
  }
  return bytes;
}

}  // namespace

WipedBytes BytesOf(std::span<const wchar_t> text, TextForm form, const std::string& name) {
  if (form == TextForm::Bytes) return CodePageBytes(text, name);
  const WipedText units(text.begin(), text.end());
  std::optional<WipedBytes> utf8 = TextEncoding("utf-8").Encode(units);
  if (!utf8) throw Untranslatable(name);
  return std::move(*utf8);
}

}  // namespace latchkey::cli
