#include "cli/hex_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/failure.h"
#include "diagnostics/failure_table.h"

namespace latchkey::cli {

namespace {

CommandError NoDigit(std::uint8_t character, std::uint64_t position, const std::string& file) {
  return WrongCharacter("not a hexadecimal digit", character, position, file,
                        "the digits are 0 to 9, A to F and a to f; white space and 0x or \\x "
                        "before a byte are skipped");
}

}  // namespace

void AppendDigits(HexConverter& converter, std::span<const std::uint8_t> bytes,
                  WipedBytes& digits) {
  converter.Encode(bytes, ExtendBy(2 * bytes.size(), digits).data());
}

bool AppendBytes(HexConverter& converter, std::span<const std::uint8_t> digits, WipedBytes& bytes) {
  return converter.Decode(digits, ExtendBy(digits.size() / 2, bytes).data());
}

WipedBytes UpperHexOf(std::span<const std::uint8_t> bytes) {
  WipedBytes digits;
  digits.reserve(2 * bytes.size());
  HexConverter converter;
  AppendDigits(converter, bytes, digits);
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
  } else if (!IsHexDigit(character)) {
    throw NoDigit(character, position_, file);
  } else if (first_ == 0) {
    first_ = character;
    isMarked_ = lineIsEmpty_ = false;
  } else {
    const std::array pair{std::exchange(first_, std::uint8_t{0}), character};
    static_cast<void>(AppendBytes(converter_, pair, bytes));  // both are digits
  }
}

// Decodes runs of whole bytes at once.
WipedBytes HexReader::Read(std::span<const std::uint8_t> text, const std::string& file) {
  WipedBytes bytes;
  bytes.reserve(text.size() / 2 + 1);
  while (!text.empty()) {
    if (mark_ == 0 && first_ == 0) {
      const auto end = std::ranges::find_if_not(text, IsHexDigit);
      const auto count = static_cast<std::size_t>(end - text.begin()) / 2 * 2;
      // The 0 of a following 0x is an odd digit at the end, which is left out.
      static_cast<void>(AppendBytes(converter_, text.first(count), bytes));
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
  AppendDigits(converter_, bytes, text);
}

void HexWriter::Finish(WipedBytes& text) {
  if (!isEmpty_) text.push_back('\n');
}

}  // namespace latchkey::cli
