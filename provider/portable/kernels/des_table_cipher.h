// DES and 3DES one block after the other, by table: for what cannot be bitsliced, which is CBC
// encryption (each block waits for the one before) and few blocks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "provider/portable/kernels/des_key.h"

namespace latchkey::provider::des {

// Both work in place on `length` bytes, a multiple of eight; `feedback`, eight bytes, is the
// ciphertext block before the data and becomes the last one of it.
void EncryptCbc(const KeySchedule& keys, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept;
void DecryptCbc(const KeySchedule& keys, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept;

}  // namespace latchkey::provider::des
