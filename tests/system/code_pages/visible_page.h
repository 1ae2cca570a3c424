// A code page as a client sees it through the component.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace latchkey::test {

struct VisiblePage {
  std::array<char16_t, 256> characters{};  // of each byte
  // Of each character: its byte; 63 for one that the code page does not have; or 100 (hexadecimal)
  // and the last of its bytes, when it has several.
  std::vector<std::uint16_t> codes;

  bool operator==(const VisiblePage&) const = default;
};

constexpr std::size_t kCharacters = 0x10000;
constexpr std::uint16_t kSeveralBytes = 0x100;

// A line of vectors/code_pages.txt for the page: its number, the characters of bytes 80 to FF, how
// many characters have several bytes, how many the page does not have, a digest of all codes
// (64-bit FNV-1a, low byte first), and `source`.
std::string LineOf(unsigned number, const VisiblePage& page, const std::string& source);

}  // namespace latchkey::test
