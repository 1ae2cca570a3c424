// A code page as seen by a client of the component.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace latchkey::test {

struct VisiblePage {
  std::array<char16_t, 256> characters{};  // of each byte
  // For each character: its byte; 63 for one that the code page lacks; or 100 (hexadecimal) plus
  // the last of its bytes, if it has several.
  std::vector<std::uint16_t> codes;

  bool operator==(const VisiblePage&) const = default;
};

constexpr std::size_t kCharacters = 0x10000;
constexpr std::uint16_t kSeveralBytes = 0x100;

// A line of vectors/code_pages.txt for the page: its number, the characters of bytes 80 to FF, the
// number of characters with several bytes, the number that the page lacks, a digest of all codes
// (64-bit FNV-1a, low byte first), and `source`.
std::string LineOf(unsigned number, const VisiblePage& page, const std::string& source);

}  // namespace latchkey::test
