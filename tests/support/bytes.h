// Conversions of bytes, byte arrays and texts to and from readable forms.
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

// The bytes of pairs of hexadecimal digits.
[[nodiscard]] Bytes FromHex(std::string_view digits);

// The codes of an ASCII text.
[[nodiscard]] Bytes BytesOf(std::string_view text);

// The byte array for these bytes: the bytes and the trailing zero element.
[[nodiscard]] ByteArray ArrayOf(std::span<const std::uint8_t> bytes);
[[nodiscard]] ByteArray ArrayOf(std::string_view text);

// All elements, including the last.
[[nodiscard]] Bytes ElementsOf(const ByteArray& array);

// All elements but the last.
[[nodiscard]] Bytes DataOf(const ByteArray& array);

// `size` different bytes; the last one is not a space.
[[nodiscard]] Bytes SampleBytes(std::size_t size);

// An ASCII text in 16-bit characters.
[[nodiscard]] Text Wide(std::string_view text);

}  // namespace latchkey::test
