// Hexadecimal digits (RFC 4648, section 8), 32 bytes at a time; compiled for AVX-512VBMI, whose
// permutation of bytes is a look-up in a table that fills one or two registers. Permuting bytes and
// shifting them apart in one instruction each is the way of W. Mula and D. Lemire, "Base64 encoding
// and decoding at almost the speed of a memory copy" (2020). The rest takes the portable form.
#include <array>

#include "platform/linux/kernels/avx512.h"
#include "platform/linux/kernels/hex_digits.h"

namespace latchkey::platform {
namespace {

constexpr std::size_t kStep = 32;
constexpr std::size_t kRegister = 64;

template <std::size_t count>
using ByteRow = std::array<std::uint8_t, count>;

template <std::size_t count, class ByteAt>
constexpr ByteRow<count> MakeRow(ByteAt&& byteAt) {
  ByteRow<count> row{};
  for (std::size_t i = 0; i < count; ++i) row[i] = static_cast<std::uint8_t>(byteAt(i));
  return row;
}

__m512i Load(const std::uint8_t* bytes) noexcept { return _mm512_loadu_si512(bytes); }

// Each byte four times, so that a character has room for each of its halves.
constexpr auto kSpread = MakeRow<2 * kRegister>([](std::size_t i) { return i / 4; });
// The bit of two spread bytes from which a digit's 8 bits are taken: the upper half, then the lower
// one; what follows it in the upper bits does not matter, nor do the odd bytes.
constexpr auto kHalves =
    MakeRow<kRegister>([](std::size_t i) { return i % 8 / 4 * 32 + (i % 4 == 0 ? 4 : 0); });
constexpr auto kDigits =
    MakeRow<kRegister>([](std::size_t i) { return "0123456789ABCDEF"[i % 16]; });

void Encode(const std::uint8_t* bytes, std::size_t count, char16_t* digits) noexcept {
  constexpr __mmask64 kLowBytes = 0x5555555555555555;
  const __m512i halves = Load(kHalves.data());
  const __m512i table = Load(kDigits.data());
  const auto digitsOf = [&](__m512i source, const std::uint8_t* spread) {
    const __m512i spreadBytes = _mm512_permutexvar_epi8(Load(spread), source);
    return _mm512_maskz_permutexvar_epi8(kLowBytes,
                                         _mm512_multishift_epi64_epi8(halves, spreadBytes), table);
  };
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const __m512i source =
        _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes)));
    _mm512_storeu_si512(digits, digitsOf(source, kSpread.data()));
    _mm512_storeu_si512(digits + kStep, digitsOf(source, kSpread.data() + kRegister));
  }
  kHexDigitsPortable.encode(bytes, count, digits);
}

// What a character counts for: its value as a digit, and two marks.
constexpr std::uint8_t kIsDigit = 0x80;
constexpr std::uint8_t kLetsSecondCount = 0x40;  // a digit or a skipped character
constexpr std::uint8_t kValue = 0x0F;

constexpr std::uint8_t MeaningOf(std::size_t character) {
  constexpr auto kDigit = [](std::size_t value) {
    return static_cast<std::uint8_t>(value | kIsDigit | kLetsSecondCount);
  };
  if (character >= '0' && character <= '9') return kDigit(character - '0');
  const std::size_t lowerCase = character | 0x20;
  if (lowerCase >= 'a' && lowerCase <= 'f') return kDigit(lowerCase - 'a' + 10);
  return character == ' ' || character == '\t' || character == '\n' ? kLetsSecondCount : 0;
}

constexpr auto kMeanings = MakeRow<2 * kRegister>(MeaningOf);

// Packing works in quarters of a register, so that the numbers of the first 32 characters stand in
// the first halves of them.
constexpr auto kOrder =
    MakeRow<kRegister>([](std::size_t i) { return i % 16 / 4 * 16 + i % 32 / 16 * 8 + i % 4 * 2; });

// Characters are narrowed to bytes first: one beyond 255 becomes 255 or, taken for negative, 0.
// Beyond 127 none means anything. A second digit counts behind a digit or a skipped character, and
// then the first one is worth 16; by itself it is worth 1.
void Decode(const char16_t* digits, std::size_t count, std::uint8_t* bytes) noexcept {
  const __m512i lowTable = Load(kMeanings.data());
  const __m512i highTable = Load(kMeanings.data() + kRegister);
  const __m512i order = Load(kOrder.data());
  const __m512i marks = _mm512_set1_epi16(static_cast<short>(kIsDigit << 8 | kLetsSecondCount));
  for (; count >= kStep; count -= kStep, bytes += kStep, digits += 2 * kStep) {
    const __m512i characters =
        _mm512_packus_epi16(_mm512_loadu_si512(digits), _mm512_loadu_si512(digits + kStep));
    const __mmask64 isAscii =
        _mm512_testn_epi8_mask(characters, _mm512_set1_epi8(static_cast<char>(0x80)));
    const __m512i meanings =
        _mm512_maskz_permutex2var_epi8(isAscii, lowTable, characters, highTable);
    const __mmask32 both = _mm512_cmpeq_epi16_mask(_mm512_and_si512(meanings, marks), marks);
    const __m512i worth =
        _mm512_mask_blend_epi16(both, _mm512_set1_epi16(0x0001), _mm512_set1_epi16(0x0110));
    const __m512i pairs =
        _mm512_maddubs_epi16(_mm512_and_si512(meanings, _mm512_set1_epi8(kValue)), worth);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes),
                        _mm512_castsi512_si256(_mm512_permutexvar_epi8(order, pairs)));
  }
  kHexDigitsPortable.decode(digits, count, bytes);
}

}  // namespace

constinit const HexDigits kHexDigitsAvx512Vbmi{&Encode, &Decode};

}  // namespace latchkey::platform
