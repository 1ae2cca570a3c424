#include "cli/hex_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/failure.h"
#include "crypto/hexadecimal.h"

namespace latchkey::cli {

namespace {

bool IsDigit(std::uint8_t character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
         (character >= 'a' && character <= 'f');
}

bool IsSpace(std::uint8_t character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

CommandError NoDigit(std::uint8_t character, std::uint64_t position, const std::string& file) {
  const bool isVisible = character > ' ' && character < 0x7F;
  const std::array code{character};
  return CommandError(Failure{
      .text = "not a hexadecimal digit: " +
              (isVisible ? "'" + std::string(1, static_cast<char>(character)) + "'"
                         : "byte " + LowerHexOf(code)) +
              " at position " + std::to_string(position),
      .file = file,
      .hint =
          "the digits are 0 to 9, A to F and a to f; white space and 0x or \\x before a byte are "
          "skipped"});
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

void HexReader::Take(std::uint8_t character, const std::string& file) {
  if (mark_ != 0) {
    const char mark = std::exchange(mark_, '\0');
    if ((character | 0x20) == 'x') return;
    if (mark == '\\') throw NoDigit('\\', position_ - 1, file);
    digits_.push_back('0');
  }
  if (IsSpace(character)) return;
  const bool startsByte = digits_.size() % 2 == 0;
  if (startsByte && (character == '0' || character == '\\')) {
    mark_ = static_cast<char>(character);
  } else if (IsDigit(character)) {
    digits_.push_back(character);
  } else {
    throw NoDigit(character, position_, file);
  }
}

WipedBytes HexReader::Read(std::span<const std::uint8_t> text, const std::string& file) {
  digits_.reserve(digits_.size() + text.size() + 1);
  for (const std::uint8_t character : text) {
    ++position_;
    Take(character, file);
  }
  const auto rest = digits_.end() - static_cast<std::ptrdiff_t>(digits_.size() % 2);
  Text pairs(digits_.begin(), rest);
  const WipeAtExit wipe(pairs);
  digits_.erase(digits_.begin(), rest);
  WipedBytes bytes(pairs.size() / 2);
  DecodeHex(pairs, bytes);
  return bytes;
}

void HexReader::Finish(const std::string& file) const {
  if (mark_ == '\\') throw NoDigit('\\', position_, file);
  if (mark_ != 0 || !digits_.empty()) throw CommandError(FailureAt(check::kHexLength, file));
}

}  // namespace latchkey::cli
