// Nettle's CBC and RC4 as the plain ciphers that the kernels must equal.
#pragma once

#include <cstdint>
#include <span>

#include "provider/crypto_provider.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// `feedback` is the initialisation vector, eight bytes; RC4 takes none. RC2 has all its bits
// effective.
[[nodiscard]] Bytes ReferenceEncryption(provider::AlgorithmId id, const Bytes& key,
                                        const Bytes& feedback, std::span<const std::uint8_t> data);

// The key of that length is what MakeCipher takes.
[[nodiscard]] std::size_t ReferenceKeySize(provider::AlgorithmId id);

}  // namespace latchkey::test
