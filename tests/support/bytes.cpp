#include "tests/support/bytes.h"

namespace latchkey::test {

std::string Hex(std::span<const std::uint8_t> bytes) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digits;
  for (const std::uint8_t byte : bytes) {
    digits += kDigits[byte >> 4];
    digits += kDigits[byte & 0x0F];
  }
  return digits;
}

Bytes FromHex(std::string_view digits) {
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes.push_back(
        static_cast<std::uint8_t>(std::stoul(std::string(digits.substr(i, 2)), nullptr, 16)));
  }
  return bytes;
}

Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

ByteArray ArrayOf(std::span<const std::uint8_t> bytes) {
  return ByteArray::WithTrailingZero(bytes);
}

ByteArray ArrayOf(std::string_view text) { return ArrayOf(BytesOf(text)); }

Bytes ElementsOf(const ByteArray& array) {
  return {array.Elements().begin(), array.Elements().end()};
}

Bytes DataOf(const ByteArray& array) {
  Bytes data = ElementsOf(array);
  if (!data.empty()) data.pop_back();
  return data;
}

Bytes SampleBytes(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<std::uint8_t>(0xC1 + i * 7 + i / 256);
  }
  if (!bytes.empty() && bytes.back() == ' ') bytes.back() = 0;
  return bytes;
}

Text Wide(std::string_view text) { return {text.begin(), text.end()}; }

}  // namespace latchkey::test
