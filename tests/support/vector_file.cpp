#include "tests/support/vector_file.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace latchkey::test {
namespace {

std::vector<std::string> FieldsOf(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

}  // namespace

std::vector<VectorLine> ReadVectors(std::string_view name, std::size_t fieldCount) {
  const std::string path = "vectors/" + std::string(name);
  std::ifstream file(path);
  std::vector<VectorLine> lines;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.starts_with('#')) continue;
    lines.push_back({path + ":" + std::to_string(number), FieldsOf(line)});
    if (lines.back().fields.size() != fieldCount) {
      throw std::runtime_error("wrong number of fields: " + lines.back().place);
    }
  }
  if (lines.empty()) throw std::runtime_error("no vectors: " + path);
  return lines;
}

Bytes BytesOfField(std::string_view hexadecimal) {
  Bytes bytes = hexadecimal == "-" ? Bytes() : FromHex(hexadecimal);
  if (hexadecimal != "-" && Hex(bytes) != hexadecimal) {
    throw std::runtime_error("not bytes: " + std::string(hexadecimal));
  }
  return bytes;
}

std::uint32_t NumberOfField(const std::string& digits) {
  const unsigned long number = std::stoul(digits);
  if (std::to_string(number) != digits) throw std::runtime_error("not a number: " + digits);
  return static_cast<std::uint32_t>(number);
}

}  // namespace latchkey::test
