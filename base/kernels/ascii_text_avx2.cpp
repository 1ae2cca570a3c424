// ASCII characters; compiled for AVX2. A step is 64 elements, whose bits are combined to check that
// all are ASCII. Narrowing packs with saturation, widening is zero extension.
#include <immintrin.h>

#include "base/kernels/ascii_text.h"

namespace latchkey {
namespace {

constexpr std::size_t kStep = AsciiText::kStep;

__m256i Load(const void* from, std::size_t number) noexcept {
  return _mm256_loadu_si256(static_cast<const __m256i*>(from) + number);
}

// Narrowing interleaves the halves of the two registers, so this restores their order.
__m256i Narrowed(__m256i first, __m256i second) noexcept {
  return _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), _MM_SHUFFLE(3, 1, 2, 0));
}

std::size_t Narrow(const char16_t* characters, std::size_t count, std::uint8_t* bytes) noexcept {
  const __m256i beyond = _mm256_set1_epi16(static_cast<short>(0xFF80));
  std::size_t done = 0;
  for (; count - done >= kStep; done += kStep) {
    const char16_t* const from = characters + done;
    const __m256i a = Load(from, 0);
    const __m256i b = Load(from, 1);
    const __m256i c = Load(from, 2);
    const __m256i d = Load(from, 3);
    const __m256i all = _mm256_or_si256(_mm256_or_si256(a, b), _mm256_or_si256(c, d));
    if (_mm256_testz_si256(all, beyond) == 0) break;
    auto* const to = reinterpret_cast<__m256i*>(bytes + done);
    _mm256_storeu_si256(to, Narrowed(a, b));
    _mm256_storeu_si256(to + 1, Narrowed(c, d));
  }
  return done;
}

void StoreWidened(char16_t* to, __m256i bytes) noexcept {
  auto* const words = reinterpret_cast<__m256i*>(to);
  _mm256_storeu_si256(words, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)));
  _mm256_storeu_si256(words + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
}

std::size_t Widen(const std::uint8_t* bytes, std::size_t count, char16_t* characters) noexcept {
  std::size_t done = 0;
  for (; count - done >= kStep; done += kStep) {
    const __m256i a = Load(bytes + done, 0);
    const __m256i b = Load(bytes + done, 1);
    if (_mm256_movemask_epi8(_mm256_or_si256(a, b)) != 0) break;
    StoreWidened(characters + done, a);
    StoreWidened(characters + done + kStep / 2, b);
  }
  return done;
}

}  // namespace

constinit const AsciiText kAsciiTextAvx2{&Narrow, &Widen};

}  // namespace latchkey
