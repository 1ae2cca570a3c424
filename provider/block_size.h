// The block size of the ciphers.
#pragma once

#include <cstddef>

namespace latchkey::provider {

// In bytes, of every block cipher here: RC2, DES and 3DES.
inline constexpr std::size_t kBlockSize = 8;

}  // namespace latchkey::provider
