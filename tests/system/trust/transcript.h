// The events of a case, line by line, and a digest of all lines.
#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "latchkey/byte_array.h"
#include "latchkey/types.h"

namespace latchkey::test {

class Transcript {
 public:
  // Prints each line immediately if `shown`.
  explicit Transcript(bool shown = false) : shown_(shown) {}

  void Line(std::string_view line);

  // Equal for equal lines.
  [[nodiscard]] std::uint64_t Digest() const { return digest_; }

 private:
  bool shown_;
  std::uint64_t digest_ = 14695981039346656037U;
};

// Readable forms: short values in hexadecimal, long ones as their length and a digest; of an array
// also its shape.
[[nodiscard]] std::string Shown(const ByteArray& array);
[[nodiscard]] std::string Shown(TextView text);
[[nodiscard]] inline std::string Shown(bool value) { return value ? "True" : "False"; }
[[nodiscard]] inline std::string Shown(std::int64_t value) { return std::to_string(value); }
[[nodiscard]] std::string HexOf(std::uint64_t value);

}  // namespace latchkey::test
