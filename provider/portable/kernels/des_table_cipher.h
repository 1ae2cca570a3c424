// DES and 3DES one block at a time, by table: for CBC encryption, where each block waits for the
// one before, and for few blocks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "provider/portable/kernels/des_key.h"

namespace latchkey::provider::des {

// Both work in place on `length` bytes, a multiple of eight; `feedback`, eight bytes, is the
// ciphertext block before the data and becomes its last ciphertext block.
void EncryptCbc(const KeySchedule& keys, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept;
void DecryptCbc(const KeySchedule& keys, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept;

}  // namespace latchkey::provider::des
