#include "platform/code_page.h"

#include <cstddef>

#include "platform/linux/until_unload.h"

namespace latchkey::platform {
namespace {

// What the bytes 80 to 9F denote in Windows-1252, from the Unicode Consortium's CP1252.TXT. The
// bytes it leaves undefined denote the control characters of the same value, as on Windows.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80 to 87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88 to 8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90 to 97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98 to 9F
};

CodePage::ByteTable Windows1252() {
  CodePage::ByteTable table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = static_cast<std::int32_t>(byte);
  }
  for (std::size_t i = 0; i < kHighControls.size(); ++i) table[0x80 + i] = kHighControls[i];
  return table;
}

std::uint32_t NoLongCode(char16_t /*character*/) { return CodePage::kDefaultCode; }

}  // namespace

const CodePage& SystemCodePage() {
  static UntilUnload<CodePage> codePage(Windows1252(), NoLongCode);
  return codePage.Get();
}

}  // namespace latchkey::platform
