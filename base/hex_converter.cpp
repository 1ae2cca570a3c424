#include "base/hex_converter.h"

#include <algorithm>

namespace latchkey {

// Without a branch, so that a compiler can check several characters at once.
bool IsHexDigit(std::uint8_t character) noexcept {
  const unsigned digit = character;
  const unsigned letter = digit | 0x20U;
  return (static_cast<unsigned>(digit - '0' <= 9U) | static_cast<unsigned>(letter - 'a' <= 5U)) !=
         0;
}

void HexConverter::Encode(std::span<const std::uint8_t> bytes, std::uint8_t* digits) noexcept {
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), kStep / 2);
    kernel_.encode(bytes.data(), count, digits_.data());
    digits = std::transform(digits_.begin(), digits_.begin() + 2 * count, digits,
                            [](char16_t digit) { return static_cast<std::uint8_t>(digit); });
    bytes = bytes.subspan(count);
  }
}

bool HexConverter::Widen(std::span<const std::uint8_t> digits) noexcept {
  bool isGood = true;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    isGood &= IsHexDigit(digits[i]);
    digits_[i] = static_cast<char16_t>(digits[i]);
  }
  return isGood;
}

bool HexConverter::Decode(std::span<const std::uint8_t> digits, std::uint8_t* bytes) noexcept {
  bool isGood = true;
  while (digits.size() > 1) {
    const std::size_t count = std::min(digits.size(), kStep) / 2;
    isGood &= Widen(digits.first(2 * count));
    kernel_.decode(digits_.data(), count, bytes);
    bytes += count;
    digits = digits.subspan(2 * count);
  }
  return isGood;
}

}  // namespace latchkey
