// Reads the known answers under tests/vectors/.
//
// A file is lines of fields with spaces between; a line that starts with # tells what follows and
// where it comes from. The last field of every other line is its source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/bytes.h"

namespace latchkey::test {

struct VectorLine {
  std::string place;  // "file:line", for messages
  std::vector<std::string> fields;
};

// The lines of "vectors/<name>", which is looked for in the working directory. Throws
// std::runtime_error when the file cannot be read, has no lines, or has one without `fieldCount`
// fields: a test must not pass for want of data.
[[nodiscard]] std::vector<VectorLine> ReadVectors(std::string_view name, std::size_t fieldCount);

// The bytes of a field of upper-case hexadecimal digits; "-" stands for none. Throws for other
// texts.
[[nodiscard]] Bytes BytesOfField(std::string_view hexadecimal);

// The number in a field of decimal digits. Throws for other texts.
[[nodiscard]] std::uint32_t NumberOfField(const std::string& digits);

}  // namespace latchkey::test
