// Base64 (RFC 4648, section 4) by the system's library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace latchkey::cli {

// The length of the text of `count` bytes, with padding.
[[nodiscard]] constexpr std::size_t Base64Length(std::size_t count) noexcept {
  return (count + 2) / 3 * 4;
}

// Writes the text on one line; `text` has Base64Length elements and room for one more.
void EncodeBase64(std::span<const std::uint8_t> bytes, std::span<std::uint8_t> text) noexcept;

// Decodes a text of which only the last two characters may be padding, and which has a multiple of
// 4 characters. `bytes` has 3/4 of its length. Returns the number of bytes, nothing for text that
// is not Base64.
[[nodiscard]] std::optional<std::size_t> DecodeBase64(std::span<const std::uint8_t> text,
                                                      std::span<std::uint8_t> bytes) noexcept;

}  // namespace latchkey::cli
