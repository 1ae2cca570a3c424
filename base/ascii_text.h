// The loops that turn ASCII characters into bytes of the same number and back: one form for any
// CPU, and those of the system's kernels. Each form gives the same results.
#pragma once

#include <cstddef>
#include <cstdint>

namespace latchkey {

// Both convert the leading steps of kStep elements that are ASCII throughout, at most `count`
// elements, and give the number of elements converted. Behind them nothing is written.
struct AsciiText {
  static constexpr std::size_t kStep = 64;

  std::size_t (*narrow)(const char16_t* characters, std::size_t count,
                        std::uint8_t* bytes) noexcept;
  std::size_t (*widen)(const std::uint8_t* bytes, std::size_t count, char16_t* characters) noexcept;
};

// In standard C++.
extern const AsciiText kAsciiTextPortable;

// The fastest that this machine runs.
[[nodiscard]] const AsciiText& FastestAsciiText() noexcept;

}  // namespace latchkey
