#include "platform/system_code_page.h"

#include "platform/windows/code_page_codes.h"

namespace latchkey::platform {
namespace {

std::uint32_t LongAnsiCode(char16_t character) { return LongCodeOf(CP_ACP, character); }

}  // namespace

const CodePage& SystemCodePage() {
  static const CodePage codePage(HighHalfOf(CP_ACP), LongAnsiCode);
  return codePage;
}

}  // namespace latchkey::platform
