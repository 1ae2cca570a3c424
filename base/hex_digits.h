// The loops that turn bytes into hexadecimal digits and back: one form for any CPU, and those of
// the system's kernels. Each form gives the same.
//
// Digits may be a password or a key: no form branches on them or uses them as an index into memory,
// so that the time and the cache tell nothing of them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace latchkey {

struct HexDigits {
  // Writes two digits for each of `count` bytes, in upper case, the high digit first.
  void (*encode)(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept;

  // Reads two characters for each of `count` bytes. Spaces, tabs and line feeds are skipped, digits
  // of either case are read up to the first other character; no digit gives 0.
  void (*decode)(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept;
};

// In standard C++.
extern const HexDigits kHexDigitsPortable;

// The fastest that this machine runs.
[[nodiscard]] const HexDigits& FastestHexDigits() noexcept;

}  // namespace latchkey
