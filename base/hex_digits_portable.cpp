// Hexadecimal digits (RFC 4648, section 8) in standard C++, written so that the compiler can turn
// the loops into vector instructions: arithmetic and masks instead of branches and tables, and 16
// bits throughout, the width of a character, so that as many as possible fit in a register.
#include "base/hex_digits.h"

namespace latchkey {
namespace {

// A mask is all ones or all zeros.
using Bits = std::uint16_t;

constexpr Bits BitsOf(int value) { return static_cast<Bits>(value); }

// Requires `high` - `low` < 8000 (hexadecimal).
constexpr Bits MaskIfBetween(Bits value, Bits low, Bits high) {
  return BitsOf((BitsOf(BitsOf(value - low) | BitsOf(high - value)) >> 15) - 1);
}

constexpr char16_t DigitOf(int value) {
  constexpr Bits kGap = u'A' - (u'9' + 1);
  return static_cast<char16_t>(u'0' + value + (MaskIfBetween(BitsOf(value), 10, 15) & kGap));
}

constexpr Bits MaskIfSkipped(Bits character) {
  static_assert(u'\t' + 1 == u'\n');
  return MaskIfBetween(character, u' ', u' ') | MaskIfBetween(character, u'\t', u'\n');
}

struct Digit {
  Bits mask;   // all ones for a digit
  Bits value;  // 0 if it is not a digit
};

constexpr Digit ReadDigit(Bits character) {
  const Bits lowerCase = character | Bits{0x20};
  const Bits isDecimal = MaskIfBetween(character, u'0', u'9');
  const Bits isLetter = MaskIfBetween(lowerCase, u'a', u'f');
  return {BitsOf(isDecimal | isLetter),
          BitsOf((isDecimal & (character - u'0')) | (isLetter & (lowerCase - u'a' + 10)))};
}

// The second digit counts only after a digit or a skipped character, and then shifts the first one
// up.
constexpr std::uint8_t ReadPair(char16_t first, char16_t second) {
  const Digit high = ReadDigit(first);
  const Digit low = ReadDigit(second);
  const Bits both = BitsOf((high.mask | MaskIfSkipped(first)) & low.mask);
  const Bits moved = BitsOf((both & (high.value * 16)) | (~both & high.value));
  return static_cast<std::uint8_t>(moved | (both & low.value));
}

void Encode(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    digits[2 * i] = DigitOf(bytes[i] >> 4);
    digits[2 * i + 1] = DigitOf(bytes[i] & 0x0F);
  }
}

void Decode(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept {
  for (std::size_t i = 0; i < count; ++i) bytes[i] = ReadPair(digits[2 * i], digits[2 * i + 1]);
}

}  // namespace

constinit const HexDigits kHexDigitsPortable{&Encode, &Decode};

}  // namespace latchkey
