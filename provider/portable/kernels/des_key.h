// The round keys of DES and 3DES.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "provider/portable/kernels/des_tables.h"

namespace latchkey::provider::des {

// The 48 bits of one round, six for each S-box in the low bits of a byte: boxes 1, 3, 5 and 7 from
// the top byte of `odd` down, boxes 2, 4, 6 and 8 from the top byte of `even` down.
struct RoundKey {
  std::uint32_t odd;
  std::uint32_t even;
};

inline constexpr std::size_t kRounds = 16;
inline constexpr std::size_t kKeySize = 8;

// All rounds in the order of encryption, 16 for DES and 48 for 3DES (encrypt, decrypt, encrypt).
// Decryption uses them backwards. Key material: its owner wipes it.
struct KeySchedule {
  std::array<RoundKey, 3 * kRounds> rounds;
  std::size_t count;
};

// `passes` is 1 (DES) or 3 (3DES); `keys` points to eight bytes for each. Ignores parity bits and
// accepts weak keys.
void ExpandKeys(const std::uint8_t* keys, std::size_t passes, KeySchedule& schedule) noexcept;

}  // namespace latchkey::provider::des
