// Hexadecimal digits (RFC 4648, section 8), 16 bytes at a time in the 128-bit vectors of NEON,
// which every ARM64 CPU has. Loads separate the first and second digits of the pairs, and stores
// join them. The portable form processes the rest.
#include <arm_neon.h>

#include "base/kernels/hex_digits.h"

namespace latchkey {
namespace {

constexpr std::size_t kStep = 16;

// A table instruction looks up the digits in a register, not in memory.
void Encode(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept {
  const uint8x16_t table = {'0', '1', '2', '3', '4', '5', '6', '7',
                            '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const uint8x16_t values = vld1q_u8(bytes);
    const uint8x16_t high = vqtbl1q_u8(table, vshrq_n_u8(values, 4));
    const uint8x16_t low = vqtbl1q_u8(table, vandq_u8(values, vdupq_n_u8(0x0F)));
    auto* const to = reinterpret_cast<std::uint16_t*>(digits);
    const uint16x8x2_t first = {{vmovl_u8(vget_low_u8(high)), vmovl_u8(vget_low_u8(low))}};
    const uint16x8x2_t second = {{vmovl_high_u8(high), vmovl_high_u8(low)}};
    vst2q_u16(to, first);
    vst2q_u16(to + kStep, second);
  }
  kHexDigitsPortable.encode(bytes, count, digits);
}

// In each byte: all ones if it is from `low` to `high`.
uint8x16_t MaskIfBetween(uint8x16_t bytes, std::uint8_t low, std::uint8_t high) noexcept {
  return vcleq_u8(vsubq_u8(bytes, vdupq_n_u8(low)),
                  vdupq_n_u8(static_cast<std::uint8_t>(high - low)));
}

struct Digits {
  uint8x16_t mask;    // all ones for a digit
  uint8x16_t values;  // 0 if it is not a digit
};

Digits ReadDigits(uint8x16_t characters) noexcept {
  const uint8x16_t lowerCase = vorrq_u8(characters, vdupq_n_u8(0x20));
  const uint8x16_t isDecimal = MaskIfBetween(characters, '0', '9');
  const uint8x16_t isLetter = MaskIfBetween(lowerCase, 'a', 'f');
  return {vorrq_u8(isDecimal, isLetter),
          vorrq_u8(vandq_u8(isDecimal, vsubq_u8(characters, vdupq_n_u8('0'))),
                   vandq_u8(isLetter, vsubq_u8(lowerCase, vdupq_n_u8('a' - 10))))};
}

// A second digit counts only after a digit or a skipped character, and then shifts the first one
// up.
uint8x16_t ReadPairs(uint8x16_t first, uint8x16_t second) noexcept {
  const Digits high = ReadDigits(first);
  const Digits low = ReadDigits(second);
  const uint8x16_t isSkipped =
      vorrq_u8(vceqq_u8(first, vdupq_n_u8(' ')), MaskIfBetween(first, '\t', '\n'));
  const uint8x16_t both = vandq_u8(vorrq_u8(high.mask, isSkipped), low.mask);
  return vorrq_u8(vbslq_u8(both, vshlq_n_u8(high.values, 4), high.values),
                  vandq_u8(both, low.values));
}

// Narrowed with saturation: a character above 255 becomes 255, which is neither a digit nor
// skipped.
uint8x16_t Narrowed(uint16x8_t first, uint16x8_t second) noexcept {
  return vcombine_u8(vqmovn_u16(first), vqmovn_u16(second));
}

void Decode(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept {
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const auto* const from = reinterpret_cast<const std::uint16_t*>(digits);
    const uint16x8x2_t a = vld2q_u16(from);
    const uint16x8x2_t b = vld2q_u16(from + kStep);
    vst1q_u8(bytes, ReadPairs(Narrowed(a.val[0], b.val[0]), Narrowed(a.val[1], b.val[1])));
  }
  kHexDigitsPortable.decode(digits, count, bytes);
}

}  // namespace

constinit const HexDigits kHexDigitsNeon{&Encode, &Decode};

}  // namespace latchkey
