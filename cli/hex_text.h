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

// Decodes digits that arrive in pieces. Skips line ends (CR, LF).
class HexReader {
 public:
  // The complete bytes so far. Raises CommandError, about `file`, for any character that is neither
  // a digit nor a line end.
  [[nodiscard]] WipedBytes Read(std::span<const std::uint8_t> text, const std::string& file);

  // Whether one digit without its second remains.
  [[nodiscard]] bool IsOdd() const noexcept { return !half_.empty(); }

 private:
  WipedBytes half_;  // a digit without its second
  std::uint64_t position_ = 0;
};

}  // namespace latchkey::cli
