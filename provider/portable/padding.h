// The padding at the end of a decrypted message.
#pragma once

#include <cstdint>

#include "provider/portable/cipher.h"

namespace latchkey::provider {

// The number of padding bytes at the end of `block`, kBlockSize bytes, or 0 if the padding is bad:
// RFC 8018, section 6.1.1. Reads all eight bytes in any case, so that the time does not depend on
// them.
[[nodiscard]] std::uint32_t PaddingLength(const std::uint8_t* block) noexcept;

}  // namespace latchkey::provider
