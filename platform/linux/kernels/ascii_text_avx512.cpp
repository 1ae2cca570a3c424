// ASCII characters; compiled for AVX-512BW: a step of 64 whose bits together show none beyond ASCII
// is narrowed by truncation, or widened by zero extension.
#include "platform/linux/kernels/ascii_text.h"
#include "platform/linux/kernels/avx512.h"

namespace latchkey::platform {
namespace {

constexpr std::size_t kStep = AsciiText::kStep;

std::size_t Narrow(const char16_t* characters, std::size_t count, std::uint8_t* bytes) noexcept {
  const __m512i beyond = _mm512_set1_epi16(static_cast<short>(0xFF80));
  std::size_t done = 0;
  for (; count - done >= kStep; done += kStep) {
    const char16_t* const from = characters + done;
    const __m512i a = _mm512_loadu_si512(from);
    const __m512i b = _mm512_loadu_si512(from + kStep / 2);
    if (_mm512_test_epi16_mask(_mm512_or_si512(a, b), beyond) != 0) break;
    auto* const to = reinterpret_cast<__m256i*>(bytes + done);
    _mm256_storeu_si256(to, _mm512_cvtepi16_epi8(a));
    _mm256_storeu_si256(to + 1, _mm512_cvtepi16_epi8(b));
  }
  return done;
}

std::size_t Widen(const std::uint8_t* bytes, std::size_t count, char16_t* characters) noexcept {
  std::size_t done = 0;
  for (; count - done >= kStep; done += kStep) {
    const __m512i all = _mm512_loadu_si512(bytes + done);
    if (_mm512_movepi8_mask(all) != 0) break;
    char16_t* const to = characters + done;
    _mm512_storeu_si512(to, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(all)));
    _mm512_storeu_si512(to + kStep / 2, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(all, 1)));
  }
  return done;
}

}  // namespace

constinit const AsciiText kAsciiTextAvx512{&Narrow, &Widen};

}  // namespace latchkey::platform
