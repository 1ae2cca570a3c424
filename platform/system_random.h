// The operating system's random source.
#pragma once

#include <cstdint>
#include <span>

namespace latchkey::platform {

// Fills `bytes` with random bytes. Returns false if the system has none; the content is then
// unspecified.
[[nodiscard]] bool FillRandom(std::span<std::uint8_t> bytes) noexcept;

}  // namespace latchkey::platform
