// Hexadecimal digits (RFC 4648, section 8), 32 bytes at a time; compiled for AVX-512BW. The method
// is that of hex_digits_avx2.cpp with mask registers. The rest takes the portable form.
#include "platform/linux/kernels/avx512.h"
#include "platform/linux/kernels/hex_digits.h"

namespace latchkey::platform {
namespace {

constexpr std::size_t kStep = 32;

// The digits stand in a register, in which a shuffle looks them up.
void Encode(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept {
  const __m512i table = _mm512_broadcast_i32x4(_mm_setr_epi8(
      '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'));
  const __m512i nibbles = _mm512_set1_epi8(0x0F);
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const __m512i words =
        _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes)));
    // The high half of each byte, and behind it the low one.
    const __m512i halves = _mm512_and_si512(
        _mm512_or_si512(_mm512_srli_epi16(words, 4), _mm512_slli_epi16(words, 8)), nibbles);
    const __m512i found = _mm512_shuffle_epi8(table, halves);
    _mm512_storeu_si512(digits, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(found)));
    _mm512_storeu_si512(digits + kStep, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(found, 1)));
  }
  kHexDigitsPortable.encode(bytes, count, digits);
}

__mmask64 MaskIfBetween(__m512i bytes, char low, char high) noexcept {
  return _mm512_cmple_epu8_mask(_mm512_sub_epi8(bytes, _mm512_set1_epi8(low)),
                                _mm512_set1_epi8(static_cast<char>(high - low)));
}

// The numbers that 32 pairs of characters denote, in 16 bits each. A second digit counts behind a
// digit or a skipped character, and then the first one is worth 16; by itself it is worth 1.
__m512i ReadPairs(__m512i characters) noexcept {
  constexpr __mmask64 kFirsts = 0x5555555555555555;
  const __m512i lowerCase = _mm512_or_si512(characters, _mm512_set1_epi8(0x20));
  const __mmask64 isDecimal = MaskIfBetween(characters, '0', '9');
  const __mmask64 isLetter = MaskIfBetween(lowerCase, 'a', 'f');
  const __mmask64 isSkipped = _mm512_cmpeq_epi8_mask(characters, _mm512_set1_epi8(' ')) |
                              MaskIfBetween(characters, '\t', '\n');
  const __m512i decimals = _mm512_maskz_sub_epi8(isDecimal, characters, _mm512_set1_epi8('0'));
  const __m512i values =
      _mm512_mask_sub_epi8(decimals, isLetter, lowerCase, _mm512_set1_epi8('a' - 10));
  const __mmask64 isDigit = isDecimal | isLetter;
  const __mmask64 both = (isDigit >> 1) & (isDigit | isSkipped) & kFirsts;
  const __m512i worth = _mm512_mask_blend_epi8(both | both << 1, _mm512_set1_epi16(0x0001),
                                               _mm512_set1_epi16(0x0110));
  return _mm512_maddubs_epi16(values, worth);
}

// Characters are narrowed to bytes first: one beyond 255 becomes 255 or, taken for negative, 0, and
// neither is a digit or skipped. Narrowing works in quarters of a register, so at the end its parts
// of 4 bytes are put in order.
void Decode(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept {
  const __m256i order = _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7);
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const __m512i pairs = ReadPairs(
        _mm512_packus_epi16(_mm512_loadu_si512(digits), _mm512_loadu_si512(digits + kStep)));
    const __m256i parts = _mm256_permutevar8x32_epi32(_mm512_cvtepi16_epi8(pairs), order);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), parts);
  }
  kHexDigitsPortable.decode(digits, count, bytes);
}

}  // namespace

constinit const HexDigits kHexDigitsAvx512{&Encode, &Decode};

}  // namespace latchkey::platform
