// The operating system's random source.
#pragma once

#include <cstdint>
#include <span>

namespace latchkey::platform {

// Fills `bytes` with random bytes. False when the system has none to give; the content is then
// unspecified.
[[nodiscard]] bool FillRandom(std::span<std::uint8_t> bytes) noexcept;

}  // namespace latchkey::platform
