#include "crypto/seed/digits_only.h"

#include <limits>
#include <string>

#include "base/secure_memory.h"
#include "crypto/value_text.h"
#include "diagnostics/thread_state.h"

namespace latchkey {
namespace {

constexpr TextView kDropped = u".,E-+";

Text TextOf(const Variant& value) {
  const auto* text = std::get_if<TextView>(&value);
  return text != nullptr ? Text(*text) : TextOfValue(value);
}

void AppendDecimal(Text& text, std::uint32_t number) {
  const std::string digits = std::to_string(number);
  text.append(digits.begin(), digits.end());
}

Text WithCodesForLetters(TextView text) {
  const CodePage& codePage = ThreadCodePage();
  constexpr std::size_t kLongestCode = std::numeric_limits<std::uint32_t>::digits10 + 1;
  Text digits;
  digits.reserve(text.size() * kLongestCode);  // a text that grows leaves its memory unwiped
  for (const char16_t& character : text) {
    if (platform::IsNumericText(TextView(&character, 1))) {
      digits += character;
    } else {
      AppendDecimal(digits, codePage.CodeOf(character));
    }
  }
  return digits;
}

}  // namespace

Text DigitsOnly(const Variant& value) noexcept {
  try {
    Text text = TextOf(value);
    const WipeAtExit wipeText(text);
    std::erase_if(text,
                  [](char16_t character) { return kDropped.find(character) != TextView::npos; });
    return platform::IsNumericText(text) ? text : WithCodesForLetters(text);
  } catch (...) {
    return {};
  }
}

}  // namespace latchkey
