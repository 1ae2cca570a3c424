// Hexadecimal digits (RFC 4648, section 8), 16 bytes at a time; compiled for AVX2. Encoding
// separates the halves of each byte and looks up their digits with a shuffle. Decoding classifies
// characters by range comparisons and combines each pair with a multiplication. The portable form
// processes the rest.
#include <immintrin.h>

#include "base/kernels/hex_digits.h"

namespace latchkey {
namespace {

constexpr std::size_t kStep = 16;

// A shuffle looks up the digits in a register, not in memory.
void Encode(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept {
  const __m256i table = _mm256_broadcastsi128_si256(_mm_setr_epi8(
      '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'));
  const __m256i nibbles = _mm256_set1_epi8(0x0F);
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const __m256i words =
        _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
    // The high half of each byte, followed by the low half.
    const __m256i halves = _mm256_and_si256(
        _mm256_or_si256(_mm256_srli_epi16(words, 4), _mm256_slli_epi16(words, 8)), nibbles);
    const __m256i found = _mm256_shuffle_epi8(table, halves);
    auto* const to = reinterpret_cast<__m256i*>(digits);
    _mm256_storeu_si256(to, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(found)));
    _mm256_storeu_si256(to + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(found, 1)));
  }
  kHexDigitsPortable.encode(bytes, count, digits);
}

// In each byte: all ones if it is from `low` to `high`.
__m256i MaskIfBetween(__m256i bytes, char low, char high) noexcept {
  const __m256i above = _mm256_sub_epi8(bytes, _mm256_set1_epi8(low));
  const __m256i most = _mm256_set1_epi8(static_cast<char>(high - low));
  return _mm256_cmpeq_epi8(_mm256_min_epu8(above, most), above);
}

// The values of 16 pairs of characters, in 16 bits each. A second digit counts only after a digit
// or a skipped character; the first digit then counts 16 times, otherwise once.
__m256i ReadPairs(__m256i characters) noexcept {
  const __m256i lowerCase = _mm256_or_si256(characters, _mm256_set1_epi8(0x20));
  const __m256i isDecimal = MaskIfBetween(characters, '0', '9');
  const __m256i isLetter = MaskIfBetween(lowerCase, 'a', 'f');
  const __m256i isSkipped = _mm256_or_si256(_mm256_cmpeq_epi8(characters, _mm256_set1_epi8(' ')),
                                            MaskIfBetween(characters, '\t', '\n'));
  const __m256i values = _mm256_or_si256(
      _mm256_and_si256(isDecimal, _mm256_sub_epi8(characters, _mm256_set1_epi8('0'))),
      _mm256_and_si256(isLetter, _mm256_sub_epi8(lowerCase, _mm256_set1_epi8('a' - 10))));
  const __m256i isDigit = _mm256_or_si256(isDecimal, isLetter);
  const __m256i firstPasses = _mm256_or_si256(isDigit, isSkipped);
  const __m256i both = _mm256_cmpeq_epi16(
      _mm256_and_si256(_mm256_srli_epi16(isDigit, 8), firstPasses), _mm256_set1_epi16(0xFF));
  const __m256i worth =
      _mm256_blendv_epi8(_mm256_set1_epi16(0x0001), _mm256_set1_epi16(0x0110), both);
  return _mm256_maddubs_epi16(values, worth);
}

// First narrows characters to bytes: one above 255 becomes 255 or, read as negative, 0, and neither
// is a digit or skipped. Narrowing works on halves of a register, so the last step puts its 4-byte
// parts in order.
void Decode(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept {
  const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 0, 4, 1, 5);
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const auto* const from = reinterpret_cast<const __m256i*>(digits);
    const __m256i pairs =
        ReadPairs(_mm256_packus_epi16(_mm256_loadu_si256(from), _mm256_loadu_si256(from + 1)));
    const __m256i parts = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(pairs, pairs), order);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm256_castsi256_si128(parts));
  }
  kHexDigitsPortable.decode(digits, count, bytes);
}

}  // namespace

constinit const HexDigits kHexDigitsAvx2{&Encode, &Decode};

}  // namespace latchkey
