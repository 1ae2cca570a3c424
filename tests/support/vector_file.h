// Reads the known answers under tests/vectors/.
//
// A file has lines of fields separated by spaces. A line that starts with # describes the following
// lines and their origin. The last field of every other line is its source.
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

// The lines of "vectors/<name>" below the working directory. Throws std::runtime_error if the file
// cannot be read, has no lines, or has a line without exactly `fieldCount` fields: a test must not
// pass because it has no data.
[[nodiscard]] std::vector<VectorLine> ReadVectors(std::string_view name, std::size_t fieldCount);

// The bytes of a field of upper-case hexadecimal digits; "-" means no bytes. Throws for other
// texts.
[[nodiscard]] Bytes BytesOfField(std::string_view hexadecimal);

// The number in a field of decimal digits. Throws for other texts.
[[nodiscard]] std::uint32_t NumberOfField(const std::string& digits);

}  // namespace latchkey::test
