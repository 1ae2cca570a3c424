#include "cli/hex_text.h"

#include <algorithm>
#include <array>

#include "cli/failure.h"
#include "crypto/hexadecimal.h"

namespace latchkey::cli {

namespace {

bool IsDigit(std::uint8_t character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
         (character >= 'a' && character <= 'f');
}

CommandError NoDigit(std::uint8_t character, std::uint64_t position, const std::string& file) {
  const bool isVisible = character > ' ' && character < 0x7F;
  const std::array code{character};
  Failure failure;
  failure.text = "not a hexadecimal digit: " +
                 (isVisible ? "'" + std::string(1, static_cast<char>(character)) + "'"
                            : "byte " + LowerHexOf(code)) +
                 " at position " + std::to_string(position);
  failure.file = file;
  failure.hint = "the digits are 0 to 9, A to F and a to f; line ends are skipped";
  return CommandError(std::move(failure));
}

}  // namespace

WipedBytes UpperHexOf(std::span<const std::uint8_t> bytes) {
  Text text;
  const WipeAtExit wipe(text);
  EncodeHex(bytes, text);
  WipedBytes digits(text.size());
  std::transform(text.begin(), text.end(), digits.begin(),
                 [](char16_t digit) { return static_cast<std::uint8_t>(digit); });
  return digits;
}

std::string LowerHexOf(std::span<const std::uint8_t> bytes) {
  const WipedBytes upper = UpperHexOf(bytes);
  std::string lower(upper.begin(), upper.end());
  for (char& digit : lower) {
    if (digit >= 'A') digit = static_cast<char>(digit - 'A' + 'a');
  }
  return lower;
}

WipedBytes HexReader::Read(std::span<const std::uint8_t> text, const std::string& file) {
  WipedBytes digits = std::move(half_);
  half_.clear();
  digits.reserve(digits.size() + text.size());
  for (const std::uint8_t character : text) {
    ++position_;
    if (character == '\r' || character == '\n') continue;
    if (!IsDigit(character)) throw NoDigit(character, position_, file);
    digits.push_back(character);
  }
  if (digits.size() % 2 != 0) {
    half_.assign(1, digits.back());
    digits.pop_back();
  }
  Text pairs(digits.begin(), digits.end());
  const WipeAtExit wipe(pairs);
  WipedBytes bytes(digits.size() / 2);
  DecodeHex(pairs, bytes);
  return bytes;
}

}  // namespace latchkey::cli
