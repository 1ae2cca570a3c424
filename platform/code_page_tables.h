// Windows' code pages as tables: from the C library's iconv on Linux, from the system on Windows.
#pragma once

#include <array>
#include <cstdint>

#include "base/code_page.h"

namespace latchkey::platform {

struct CodePageTables {
  CodePage::HighHalf characters{};
  // The code of each character that the code page writes in several bytes, otherwise
  // CodePage::kDefaultCode. Not filled if no character has several bytes.
  std::array<std::uint32_t, 0x10000> longCodes{};
};

// Whether `number` is one of 1250 to 1258, 874, 932, 936, 949, 950 and 65001.
[[nodiscard]] bool IsKnownCodePage(std::uint32_t number) noexcept;

// Whether characters of this known code page may take several bytes.
[[nodiscard]] bool IsMultiByte(std::uint32_t number) noexcept;

// Fills empty tables with those of a known code page; returns false if the system does not have it.
[[nodiscard]] bool ReadCodePage(std::uint32_t number, CodePageTables& tables);

}  // namespace latchkey::platform
