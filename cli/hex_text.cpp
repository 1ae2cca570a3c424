#include "cli/hex_text.h"

#include <algorithm>
#include <utility>

#include "cli/failure.h"
#include "diagnostics/failure_table.h"

namespace latchkey::cli {

namespace {

// Without a branch, so that a compiler can check several characters at once.
bool IsDigit(std::uint8_t character) noexcept {
  const unsigned digit = character;
  const unsigned letter = digit | 0x20U;
  return (static_cast<unsigned>(digit - '0' <= 9U) | static_cast<unsigned>(letter - 'a' <= 5U)) !=
         0;
}

CommandError NoDigit(std::uint8_t character, std::uint64_t position, const std::string& file) {
  return WrongCharacter("not a hexadecimal digit", character, position, file,
                        "the digits are 0 to 9, A to F and a to f; white space and 0x or \\x "
                        "before a byte are skipped");
}

}  // namespace

void HexConverter::Encode(std::span<const std::uint8_t> bytes, WipedBytes& digits) {
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), kStep / 2);
    kernel_.encode(bytes.data(), count, digits_.data());
    std::copy_n(digits_.data(), 2 * count, ExtendBy(2 * count, digits).begin());
    bytes = bytes.subspan(count);
  }
}

// Copies digits for the kernel. Returns whether all are digits.
bool HexConverter::Widen(std::span<const std::uint8_t> digits) noexcept {
  bool isGood = true;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    isGood &= IsDigit(digits[i]);
    digits_[i] = static_cast<char16_t>(digits[i]);
  }
  return isGood;
}

bool HexConverter::Decode(std::span<const std::uint8_t> digits, WipedBytes& bytes) {
  while (!digits.empty()) {
    const std::size_t count = std::min(digits.size(), kStep) / 2;
    if (!Widen(digits.first(2 * count))) return false;
    kernel_.decode(digits_.data(), count, ExtendBy(count, bytes).data());
    digits = digits.subspan(2 * count);
  }
  return true;
}

WipedBytes UpperHexOf(std::span<const std::uint8_t> bytes) {
  WipedBytes digits;
  digits.reserve(2 * bytes.size());
  HexConverter().Encode(bytes, digits);
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

void HexReader::Take(std::uint8_t character, const std::string& file, WipedBytes& bytes) {
  if (mark_ != 0) {
    const char mark = std::exchange(mark_, '\0');
    if ((character | 0x20) == 'x') {
      if (std::exchange(isMarked_, true)) throw NoDigit(character, position_, file);
      return;
    }
    if (mark == '\\') throw NoDigit('\\', position_ - 1, file);
    first_ = '0';
    isMarked_ = lineIsEmpty_ = false;
  }
  if (IsTextSpace(character)) {
    if (character == '\n') EndLine(file);
    return;
  }
  if (first_ == 0 && (character == '0' || character == '\\')) {
    mark_ = static_cast<char>(character);
  } else if (!IsDigit(character)) {
    throw NoDigit(character, position_, file);
  } else if (first_ == 0) {
    first_ = character;
    isMarked_ = lineIsEmpty_ = false;
  } else {
    const std::array pair{std::exchange(first_, std::uint8_t{0}), character};
    static_cast<void>(converter_.Decode(pair, bytes));  // both are digits
  }
}

// Decodes runs of whole bytes at once.
WipedBytes HexReader::Read(std::span<const std::uint8_t> text, const std::string& file) {
  WipedBytes bytes;
  bytes.reserve(text.size() / 2 + 1);
  while (!text.empty()) {
    if (mark_ == 0 && first_ == 0) {
      const auto end = std::ranges::find_if_not(text, IsDigit);
      const auto count = static_cast<std::size_t>(end - text.begin()) / 2 * 2;
      // The 0 of a following 0x is an odd digit at the end, which is left out.
      static_cast<void>(converter_.Decode(text.first(count), bytes));
      position_ += count;
      if (count > 0) isMarked_ = lineIsEmpty_ = false;
      text = text.subspan(count);
      if (text.empty()) break;
    }
    ++position_;
    Take(text.front(), file, bytes);
    text = text.subspan(1);
  }
  return bytes;
}

// A prefix alone in its line is an empty value.
void HexReader::EndLine(const std::string& file) {
  if (isMarked_ && !lineIsEmpty_) throw CommandError(FailureAt(check::kHexLength, file));
  isMarked_ = false;
  lineIsEmpty_ = true;
}

void HexReader::Finish(const std::string& file) const {
  if (mark_ == '\\') throw NoDigit('\\', position_, file);
  if (mark_ != 0 || first_ != 0 || (isMarked_ && !lineIsEmpty_)) {
    throw CommandError(FailureAt(check::kHexLength, file));
  }
}

void HexWriter::Write(std::span<const std::uint8_t> bytes, WipedBytes& text) {
  isEmpty_ = isEmpty_ && bytes.empty();
  converter_.Encode(bytes, text);
}

void HexWriter::Finish(WipedBytes& text) {
  if (!isEmpty_) text.push_back('\n');
}

}  // namespace latchkey::cli
