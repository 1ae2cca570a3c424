// Hexadecimal digits as the command writes and reads them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "base/secure_memory.h"

namespace latchkey::cli {

// The digits of `bytes`, upper-case as the component writes them, as ASCII.
[[nodiscard]] WipedBytes UpperHexOf(std::span<const std::uint8_t> bytes);

// The same in lower case, as the md5sum family writes digests.
[[nodiscard]] std::string LowerHexOf(std::span<const std::uint8_t> bytes);

// Decodes digits that arrive in pieces. Skips white space anywhere, and 0x or \x before a byte.
class HexReader {
 public:
  // The complete bytes so far. Raises CommandError, about `file`, for any other character.
  [[nodiscard]] WipedBytes Read(std::span<const std::uint8_t> text, const std::string& file);

  // Raises CommandError if a digit has no second.
  void Finish(const std::string& file) const;

 private:
  void Take(std::uint8_t character, const std::string& file);

  WipedBytes digits_;  // not decoded yet
  char mark_ = 0;      // the 0 or backslash of what may be 0x or \x
  std::uint64_t position_ = 0;
};

}  // namespace latchkey::cli
