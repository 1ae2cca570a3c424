// The padding of a message: RFC 8018, section 6.1.1.
#pragma once

#include <cstddef>
#include <cstdint>

#include "provider/block_size.h"
#include "provider/crypto_provider.h"

namespace latchkey::provider {

// The number of padding bytes at the end of `block`, kBlockSize bytes, or 0 if the padding is bad.
// Its time does not depend on the bytes.
[[nodiscard]] std::uint32_t PaddingLength(const std::uint8_t* block) noexcept;

// The steps before and after a block cipher that works on all messages of a batch.

// Writes the messages with their padding, one after another, and sets their lengths. None fails.
// Requires that the padded lengths fit 32 bits.
void PadEach(const MessageBatch& batch) noexcept;

// Copies the ciphertexts that consist of whole blocks, one after another; the others fail. Returns
// the sum of the lengths.
[[nodiscard]] std::size_t CopyWholeBlocks(const MessageBatch& batch) noexcept;

// Completes the batch after CopyWholeBlocks and CBC decryption of these ciphertexts as one message:
// separates the messages, and checks and removes their padding.
void SeparateEach(const MessageBatch& batch) noexcept;

}  // namespace latchkey::provider
