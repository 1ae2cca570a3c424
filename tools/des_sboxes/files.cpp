#include "tools/des_sboxes/files.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace latchkey::sboxes {
namespace {

constexpr const char* kSeeds = "tools/des_sboxes/seeds.txt";

std::string ReadFile(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path);
  if (!(file << text).flush()) throw std::runtime_error("cannot write " + path);
}

std::string HeaderOf(const std::string& kind) {
  return "provider/portable/kernels/des_sboxes_" + kind + ".h";
}

// The first place and the length of the functions of one S-box.
std::pair<std::size_t, std::size_t> PlaceIn(const std::string& text, unsigned box) {
  const std::size_t first = text.find("  // S" + std::to_string(box + 1) + ":");
  const std::size_t end = text.find("\n  }\n", first);
  if (first == std::string::npos || end == std::string::npos) {
    throw std::runtime_error("a header lacks an S-box");
  }
  return {first, end + 5 - first};
}

// The comment that the file of the seeds begins with.
std::string HeadOf(const std::string& text) {
  std::size_t end = 0;
  while (text.compare(end, 1, "#") == 0) end = text.find('\n', end) + 1;
  return text.substr(0, end);
}

bool ReadRecord(std::istream& file, Record& record) {
  std::string box;
  auto& [kind, number, gates, effort] = record;
  if (!(file >> kind >> box >> gates)) return false;
  number = ParseBox(box);
  return static_cast<bool>(file >> effort.seed >> effort.circuits >> effort.rounds >> effort.steps);
}

}  // namespace

unsigned ParseBox(const std::string& text) {
  if (text.size() != 1 || text[0] < '1' || text[0] > '8') {
    throw std::invalid_argument("an S-box has a number from 1 to 8");
  }
  return static_cast<unsigned>(text[0] - '1');
}

Records ReadRecords() {
  const std::string text = ReadFile(kSeeds);
  std::istringstream lines(text.substr(HeadOf(text).size()));
  Records records;
  for (Record record{}; ReadRecord(lines, record);) records.push_back(record);
  return records;
}

Example ReadExample() {
  const std::string text = ReadFile("tools/des_sboxes/example.txt");
  const std::size_t head = HeadOf(text).size();
  const std::size_t end = text.find('\n', head) + 1;
  std::istringstream line(text.substr(head, end - head));
  Example example;
  if (!ReadRecord(line, example.record)) throw std::runtime_error("the example has no search");
  example.text = text.substr(end);
  return example;
}

void WriteRecords(const Records& records) {
  std::ostringstream text;
  text << HeadOf(ReadFile(kSeeds));
  for (const auto& [kind, box, gates, effort] : records) {
    text << kind << ' ' << box + 1 << ' ' << gates << ' ' << effort.seed << ' ' << effort.circuits
         << ' ' << effort.rounds << ' ' << effort.steps << '\n';
  }
  WriteFile(kSeeds, text.str());
}

Record& RecordOf(Records& records, const std::string& kind, unsigned box) {
  const auto found = std::find_if(records.begin(), records.end(), [&](const Record& record) {
    return record.kind == kind && record.box == box;
  });
  if (found == records.end()) throw std::runtime_error("an S-box has no line in the seeds");
  return *found;
}

std::string ReadFunction(const std::string& kind, unsigned box) {
  const std::string text = ReadFile(HeaderOf(kind));
  const auto [first, length] = PlaceIn(text, box);
  return text.substr(first, length);
}

void WriteFunction(const std::string& kind, unsigned box, const std::string& function) {
  std::string text = ReadFile(HeaderOf(kind));
  const auto [first, length] = PlaceIn(text, box);
  WriteFile(HeaderOf(kind), text.replace(first, length, function));
}

}  // namespace latchkey::sboxes
