#include "cli/platform/linux/locale_text.h"

#include <langinfo.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is not in <clocale>

#include <cerrno>

#include "cli/platform/file_error.h"
#include "cli/utf8.h"
#include "platform/linux/character_converter.h"

namespace latchkey::cli {
namespace {

// The name for iconv of the encoding that the environment chooses; empty for UTF-8, and for ASCII,
// which programs without a locale use.
std::string LocaleEncoding() {
  const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) return {};
  const std::string encoding = ::nl_langinfo_l(CODESET, locale);
  ::freelocale(locale);
  return encoding == "UTF-8" || encoding == "ANSI_X3.4-1968" ? std::string() : encoding;
}

// A conversion to wide characters takes one step, without a copy of the text in iconv's memory.
bool Widen(const std::string& encoding, WipedBytes& text, WipedVector<wchar_t>& wide) {
  wide.resize(text.size());
  const UniqueHandle<platform::IconvTrait> converter(::iconv_open("WCHAR_T", encoding.c_str()));
  if (!converter) return false;
  // NOLINTBEGIN(*-reinterpret-cast): bytes
  char* input = reinterpret_cast<char*>(text.data());
  char* output = reinterpret_cast<char*>(wide.data());
  // NOLINTEND(*-reinterpret-cast)
  std::size_t inputLeft = text.size();
  std::size_t outputLeft = wide.size() * sizeof(wchar_t);
  const bool done = ::iconv(converter.Get(), &input, &inputLeft, &output, &outputLeft) == 0 &&
                    ::iconv(converter.Get(), nullptr, nullptr, &output, &outputLeft) == 0;
  wide.resize(wide.size() - outputLeft / sizeof(wchar_t));
  return done;
}

}  // namespace

WipedBytes Utf8OfLocale(WipedBytes text, const std::string& name) {
  const std::string encoding = LocaleEncoding();
  if (encoding.empty()) return text;
  WipedVector<wchar_t> wide;
  if (!Widen(encoding, text, wide)) throw FileError(EILSEQ, "cannot read", name);
  WipedBytes utf8(4 * wide.size());
  std::size_t length = 0;
  for (const wchar_t character : wide) {
    length += PutUtf8(static_cast<char32_t>(character), utf8.data() + length);
  }
  utf8.resize(length);
  return utf8;
}

}  // namespace latchkey::cli
