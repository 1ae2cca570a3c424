// Conversion of bytes to hexadecimal digits and back. There is a portable form and one for each
// kernel; all give the same results.
//
// Digits may be a password or a key, so no form branches on them or uses them as an index into
// memory: timing and cache reveal nothing about them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace latchkey {

struct HexDigits {
  // Writes two digits for each of `count` bytes, in upper case, the high digit first.
  void (*encode)(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept;

  // Reads two characters for each of `count` bytes. Skips spaces, tabs and line feeds, and reads
  // digits of either case up to the first other character. A pair without a digit gives 0.
  void (*decode)(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept;
};

// In standard C++.
extern const HexDigits kHexDigitsPortable;

// The fastest form that this machine can run.
[[nodiscard]] const HexDigits& FastestHexDigits() noexcept;

}  // namespace latchkey
