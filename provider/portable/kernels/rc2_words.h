// RC2 one block at a time: for CBC encryption, where each block waits for the one before, and for
// few blocks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "provider/portable/kernels/lane_kernels.h"

namespace latchkey::provider::rc2 {

// Both work in place on `length` bytes, a multiple of eight; `feedback`, eight bytes, is the
// ciphertext block before the data and becomes its last ciphertext block.
void EncryptCbc(const Rc2Key& key, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept;
void DecryptCbc(const Rc2Key& key, std::uint8_t* data, std::size_t length,
                std::uint8_t* feedback) noexcept;

}  // namespace latchkey::provider::rc2
