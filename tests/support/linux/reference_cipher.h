// Nettle's CBC and RC4, as references for the kernels.
#pragma once

#include <cstdint>
#include <span>

#include "provider/crypto_provider.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// `feedback` is the initialization vector, eight bytes, unused by RC4. All bits of an RC2 key are
// effective.
[[nodiscard]] Bytes ReferenceEncryption(provider::AlgorithmId id, const Bytes& key,
                                        const Bytes& feedback, std::span<const std::uint8_t> data);

// The key length that MakeCipher requires, in bytes.
[[nodiscard]] std::size_t ReferenceKeySize(provider::AlgorithmId id);

}  // namespace latchkey::test
