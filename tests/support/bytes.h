// Bytes, byte arrays and texts of a test, from and to readable forms.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "latchkey/byte_array.h"
#include "latchkey/types.h"

namespace latchkey::test {

using Bytes = std::vector<std::uint8_t>;

// Two upper-case digits for each byte.
[[nodiscard]] std::string Hex(std::span<const std::uint8_t> bytes);

// The bytes of hexadecimal digits in pairs.
[[nodiscard]] Bytes FromHex(std::string_view digits);

// The codes of an ASCII text.
[[nodiscard]] Bytes BytesOf(std::string_view text);

// The array that stands for these bytes: they, and the trailing zero element.
[[nodiscard]] ByteArray ArrayOf(std::span<const std::uint8_t> bytes);
[[nodiscard]] ByteArray ArrayOf(std::string_view text);

// All elements, the last included.
[[nodiscard]] Bytes ElementsOf(const ByteArray& array);

// All elements but the last.
[[nodiscard]] Bytes DataOf(const ByteArray& array);

// `size` bytes that differ, the last of them no space.
[[nodiscard]] Bytes SampleBytes(std::size_t size);

// An ASCII text in 16-bit characters.
[[nodiscard]] Text Wide(std::string_view text);

}  // namespace latchkey::test
