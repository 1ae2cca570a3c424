#include "platform/system_code_page.h"

#include <cstddef>
#include <memory>
#include <mutex>

#include "base/never_destroyed.h"
#include "latchkey/code_page.h"
#include "platform/code_page_tables.h"

namespace latchkey::platform {
namespace {

constexpr std::uint32_t kWindows1252 = 1252;

// The characters of the bytes 80 to 9F in Windows-1252, from the Unicode Consortium's CP1252.TXT,
// with 0 for undefined bytes. Higher bytes have the characters of the same number.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80 to 87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,       // 88 to 8F
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90 to 97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,  // 98 to 9F
};

// Code page 1252 needs no iconv tables, so a program that chooses no code page cannot fail.
CodePage::HighHalf Windows1252() {
  CodePage::HighHalf characters{};
  for (std::size_t i = 0; i < kHighControls.size(); ++i) characters[i] = kHighControls[i];
  return characters;
}

// The tables of the chosen code page; empty for 1252, and without long codes if no character has
// several bytes. Zero-initialized, so that they take no space in the file.
constinit CodePageTables tables;

// The current or chosen code page of the process.
struct Choice {
  std::uint32_t number = kWindows1252;
  bool inUse = false;
};

// Leaves the tables unchanged if the new ones cannot be read.
bool ReadTables(std::uint32_t number) {
  const auto read = std::make_unique<CodePageTables>();
  if (!ReadCodePage(number, *read)) return false;
  tables.characters = read->characters;
  // The memory of the others is not written.
  if (IsMultiByte(number)) tables.longCodes = read->longCodes;
  return true;
}

constinit std::mutex choiceMutex;
constinit Choice choice;

std::uint32_t NoLongCode(char16_t /*character*/) { return CodePage::kDefaultCode; }

// Needs no lock: the choice does not change after a CodePage exists.
std::uint32_t ChosenLongCode(char16_t character) { return tables.longCodes[character]; }

// Makes this the final code page.
class SettledCodePage : public CodePage {
 public:
  SettledCodePage() : SettledCodePage(std::lock_guard(choiceMutex)) {}

 private:
  explicit SettledCodePage(const std::lock_guard<std::mutex>& /*held*/)
      : CodePage(choice.number == kWindows1252 ? Windows1252() : tables.characters,
                 IsMultiByte(choice.number) ? ChosenLongCode : NoLongCode) {
    choice.inUse = true;
  }
};

}  // namespace

const CodePage& SystemCodePage() {
  static NeverDestroyed<SettledCodePage> codePage;
  return codePage.Get();
}

}  // namespace latchkey::platform

namespace latchkey {

CodePageChoice SetCodePage(std::uint32_t number) {
  using platform::choice;
  if (!platform::IsKnownCodePage(number)) return CodePageChoice::Unknown;
  const std::lock_guard lock(platform::choiceMutex);
  if (number == choice.number) return CodePageChoice::Accepted;
  if (choice.inUse) return CodePageChoice::TooLate;
  const bool isBuiltIn = number == platform::kWindows1252;
  if (!isBuiltIn && !platform::ReadTables(number)) return CodePageChoice::Unavailable;
  choice.number = number;
  return CodePageChoice::Accepted;
}

}  // namespace latchkey
