#include "tests/system/code_pages/visible_page.h"

#include <algorithm>
#include <cstdio>

namespace latchkey::test {
namespace {

std::string HexOf(std::uint64_t value, int digits) {
  std::string text(static_cast<std::size_t>(digits), '0');
  for (int i = digits; i-- > 0; value >>= 4) {
    text[static_cast<std::size_t>(i)] = "0123456789ABCDEF"[value & 0xF];
  }
  return text;
}

std::uint64_t Digest(const std::vector<std::uint16_t>& codes) {
  std::uint64_t digest = 0xCBF29CE484222325;
  for (const unsigned code : codes) {
    for (const unsigned byte : {code & 0xFF, code >> 8}) digest = (digest ^ byte) * 0x100000001B3;
  }
  return digest;
}

}  // namespace

std::string LineOf(unsigned number, const VisiblePage& page, const std::string& source) {
  std::string line = std::to_string(number) + " ";
  for (std::size_t byte = 0x80; byte < page.characters.size(); ++byte) {
    line += HexOf(page.characters.at(byte), 4);
  }
  const auto several = std::count_if(page.codes.begin(), page.codes.end(),
                                     [](unsigned code) { return code >= kSeveralBytes; });
  const auto missing = std::count(page.codes.begin(), page.codes.end(), u'?') - 1;
  line += " " + std::to_string(several) + " " + std::to_string(missing);
  return line + " " + HexOf(Digest(page.codes), 16) + " " + source;
}

}  // namespace latchkey::test
