// Conversion of ASCII characters to bytes of the same number, and back. There is a portable form
// and one for each kernel; all give the same results.
#pragma once

#include <cstddef>
#include <cstdint>

namespace latchkey {

// Both convert leading steps of kStep elements until a step contains something other than ASCII, at
// most `count` elements, and return the number of elements converted. Nothing is written after
// these.
struct AsciiText {
  static constexpr std::size_t kStep = 64;

  std::size_t (*narrow)(const char16_t* characters, std::size_t count,
                        std::uint8_t* bytes) noexcept;
  std::size_t (*widen)(const std::uint8_t* bytes, std::size_t count, char16_t* characters) noexcept;
};

// In standard C++.
extern const AsciiText kAsciiTextPortable;

// The fastest form that this machine can run.
[[nodiscard]] const AsciiText& FastestAsciiText() noexcept;

}  // namespace latchkey
