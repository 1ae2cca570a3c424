// Makes the circuits of the S-boxes of DES; tools/make_des_sboxes shows how to use it.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/des_sboxes/files.h"
#include "tools/des_sboxes/search.h"
#include "tools/des_sboxes/text.h"

namespace latchkey::sboxes {
namespace {

struct Found {
  int gates;
  std::string text;
};

template <int arity>
Found FindWith(unsigned box, const Effort& effort) {
  const Circuit<arity> circuit = Search<arity>(box, effort);
  return {.gates = circuit.GateCount(), .text = FunctionText(box, circuit)};
}

Found Find(const std::string& kind, unsigned box, const Effort& effort) {
  return kind == "gates" ? FindWith<2>(box, effort) : FindWith<3>(box, effort);
}

int Improve(const std::string& kind, unsigned box, const Effort& effort) {
  const Found found = Find(kind, box, effort);
  std::cout << kind << " S" << box + 1 << ": " << found.gates << " gates\n";
  Records records = ReadRecords();
  Record& record = RecordOf(records, kind, box);
  if (found.gates >= record.gates) return EXIT_SUCCESS;
  record = {.kind = kind, .box = box, .gates = found.gates, .effort = effort};
  WriteFunction(kind, box, found.text);
  WriteRecords(records);
  return EXIT_SUCCESS;
}

// Repeats the search of one recorded circuit, and compares or writes it.
bool Repeat(const Record& record, bool isCheck) {
  const Found found = Find(record.kind, record.box, record.effort);
  const bool isSame = ReadFunction(record.kind, record.box) == found.text;
  std::cout << record.kind << " S" << record.box + 1 << ": " << found.gates << " gates"
            << (isSame ? "" : ", different from the header") << std::endl;
  if (!isSame && !isCheck) WriteFunction(record.kind, record.box, found.text);
  return isSame || !isCheck;
}

int RepeatAll(const std::vector<std::string>& words) {
  bool isGood = true;
  for (const Record& record : ReadRecords()) {
    const bool isChosen = words.size() < 3 || words[2] == std::to_string(record.box + 1);
    if (record.kind == words[1] && isChosen) isGood &= Repeat(record, words[0] == "check");
  }
  return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}

int CheckExample() {
  const auto [record, expected] = ReadExample();
  const Found found = Find(record.kind, record.box, record.effort);
  if (found.text == expected) return EXIT_SUCCESS;
  std::cout << "found:\n" << found.text << "instead of:\n" << expected;
  return EXIT_FAILURE;
}

Effort ParseEffort(const std::vector<std::string>& words) {
  const Effort effort{.seed = std::stoull(words[0]),
                      .circuits = std::stoi(words[1]),
                      .rounds = std::stoi(words[2]),
                      .steps = std::stoi(words[3])};
  if (std::min({effort.circuits, effort.rounds, effort.steps}) < 1) {
    throw std::invalid_argument("circuits, rounds and steps must be at least 1");
  }
  return effort;
}

int Run(const std::vector<std::string>& words) {
  if (words == std::vector<std::string>{"example"}) return CheckExample();
  const bool hasKind = words.size() >= 2 && (words[1] == "gates" || words[1] == "ternary");
  if (hasKind && words[0] == "search" && words.size() == 7) {
    return Improve(words[1], ParseBox(words[2]), ParseEffort({words.begin() + 3, words.end()}));
  }
  if (hasKind && (words[0] == "write" || words[0] == "check") && words.size() <= 3) {
    return RepeatAll(words);
  }
  throw std::invalid_argument("wrong arguments; see tools/make_des_sboxes");
}

}  // namespace
}  // namespace latchkey::sboxes

int main(int count, char** words) {
  try {
    return latchkey::sboxes::Run({words + 1, words + count});
  } catch (const std::exception& error) {
    std::cerr << "make_des_sboxes: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
