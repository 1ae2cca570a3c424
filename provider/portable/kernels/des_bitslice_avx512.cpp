// 512 blocks at a time; compiled for AVX-512, whose ternary logic is the circuits' gate.
#include <immintrin.h>

#include "provider/portable/kernels/des_bitslice.h"
#include "provider/portable/kernels/des_sboxes_ternary.h"

namespace latchkey::provider {
namespace {

struct Logic {
  using Word = std::uint64_t __attribute__((vector_size(64)));

  template <int table>
  static Word Ternary(Word a, Word b, Word c) noexcept {
    return reinterpret_cast<Word>(_mm512_ternarylogic_epi64(reinterpret_cast<__m512i>(a),
                                                            reinterpret_cast<__m512i>(b),
                                                            reinterpret_cast<__m512i>(c), table));
  }
};

using Kernel = des::Bitslice<Logic::Word, des::TernaryCircuits<Logic>>;

}  // namespace

constinit const LaneKernels<des::KeySchedule> kDesLanesAvx512{
    &Kernel::Decrypt, &Kernel::Encrypt, Kernel::kLanes, Kernel::kLanes / 8, Kernel::kLanes / 8};

}  // namespace latchkey::provider
