// The files that the generator reads and writes, with paths relative to the project's folder. The
// functions throw std::runtime_error if a file cannot be used.
#pragma once

#include <string>
#include <vector>

#include "tools/des_sboxes/search.h"

namespace latchkey::sboxes {

// The search that found one circuit of a header: a line of tools/des_sboxes/seeds.txt.
struct Record {
  std::string kind;  // "gates" or "ternary"
  unsigned box;      // from 0
  int gates;
  Effort effort;
};

using Records = std::vector<Record>;

[[nodiscard]] unsigned ParseBox(const std::string& text);  // "1" to "8", as a number from 0

[[nodiscard]] Records ReadRecords();
void WriteRecords(const Records& records);
[[nodiscard]] Record& RecordOf(Records& records, const std::string& kind, unsigned box);

// A short search and the text of what it finds: tools/des_sboxes/example.txt.
struct Example {
  Record record{};
  std::string text;
};

[[nodiscard]] Example ReadExample();

// The functions of one S-box in the header of this kind.
[[nodiscard]] std::string ReadFunction(const std::string& kind, unsigned box);
void WriteFunction(const std::string& kind, unsigned box, const std::string& function);

}  // namespace latchkey::sboxes
