// SHA-1 (FIPS 180-4) with the processor's own instructions; compiled for SHA-NI. Each instruction
// does four rounds or four words of the message schedule, as described in Intel's "Intel SHA
// Extensions" (2013). The portable counterpart is Nettle's.
#include <immintrin.h>

#include "provider/portable/kernels/hash_blocks.h"
#include "provider/portable/kernels/hashes.h"

namespace latchkey::provider {
namespace {

// Four words, the first in the highest lane.
__m128i LoadWords(const std::uint8_t* from) noexcept {
  const __m128i reversed = _mm_set_epi64x(0x0001020304050607, 0x08090A0B0C0D0E0F);
  return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)), reversed);
}

// The working variables: A to D, and in `next` the E of the next message words.
struct Variables {
  __m128i abcd;
  __m128i next;
};

class Rounds {
 public:
  Rounds(const Variables& start, const std::uint8_t* data) noexcept : v_(start) {
    for (std::size_t i = 0; i < 4; ++i) w_[i] = LoadWords(data + 16 * i);
  }

  [[nodiscard]] Variables Run() noexcept {
    RunGroup<0, 0>(_mm_add_epi32(v_.next, w_[0]));
    RunGroup<1, 0>(_mm_sha1nexte_epu32(v_.next, w_[1]));
    RunGroup<2, 0>(_mm_sha1nexte_epu32(v_.next, w_[2]));
    RunGroup<3, 0>(_mm_sha1nexte_epu32(v_.next, w_[3]));
    Extend<4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19>();
    return v_;
  }

 private:
  // Rounds 4 * group to 4 * group + 3; each quarter of all the rounds has its own function.
  template <int group, int function>
  void RunGroup(__m128i eAndWords) noexcept {
    v_.next = v_.abcd;
    v_.abcd = _mm_sha1rnds4_epu32(v_.abcd, eAndWords, function);
  }

  template <int group>
  void ExtendGroup() noexcept {
    __m128i& words = w_[group % 4];
    words = _mm_xor_si128(_mm_sha1msg1_epu32(words, w_[(group + 1) % 4]), w_[(group + 2) % 4]);
    words = _mm_sha1msg2_epu32(words, w_[(group + 3) % 4]);
    RunGroup<group, group / 5>(_mm_sha1nexte_epu32(v_.next, words));
  }

  template <int... groups>
  void Extend() noexcept {
    (ExtendGroup<groups>(), ...);
  }

  Variables v_;
  __m128i w_[4];
};

struct Sha1WithInstructions {
  static constexpr std::array<std::uint32_t, 5> kInitial{0x67452301, 0xEFCDAB89, 0x98BADCFE,
                                                         0x10325476, 0xC3D2E1F0};
  static constexpr std::endian kWordOrder = std::endian::big;

  [[gnu::flatten]] static void Compress(std::uint32_t* state, const std::uint8_t* data,
                                        std::size_t count) noexcept {
    auto* const stored = reinterpret_cast<__m128i*>(state);
    constexpr int kTurnedRound = 0x1B;
    Variables v{_mm_shuffle_epi32(_mm_loadu_si128(stored), kTurnedRound),
                _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0)};
    for (; count > 0; --count, data += 64) {
      const Variables after = Rounds(v, data).Run();
      v.abcd = _mm_add_epi32(after.abcd, v.abcd);
      v.next = _mm_sha1nexte_epu32(after.next, v.next);
    }
    _mm_storeu_si128(stored, _mm_shuffle_epi32(v.abcd, kTurnedRound));
    state[4] = static_cast<std::uint32_t>(_mm_extract_epi32(v.next, 3));
  }
};

}  // namespace

constinit const nettle_hash kSha1WithInstructions =
    HashBlocks<Sha1WithInstructions>::Describe("sha1");

}  // namespace latchkey::provider
