// The padding at the end of a decrypted message.
#pragma once

#include <cstdint>

#include "provider/portable/cipher.h"

namespace latchkey::provider {

// The number of padding bytes at the end of `block`, kBlockSize bytes, or 0 when the padding
// is bad: RFC 8018, section 6.1.1. All eight bytes are looked at whatever they hold, so that the
// time tells nothing of them.
[[nodiscard]] std::uint32_t PaddingLength(const std::uint8_t* block) noexcept;

}  // namespace latchkey::provider
