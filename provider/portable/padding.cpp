#include "provider/portable/padding.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace latchkey::provider {
namespace {

constexpr std::uint64_t kEveryByte = 0x0101010101010101;

// With the first byte lowest, on every machine.
std::uint64_t LoadBlock(const std::uint8_t* block) noexcept {
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < kBlockSize; ++i) word |= std::uint64_t{block[i]} << (8 * i);
  return word;
}

// Copies to the same or a lower address; the parts may overlap. For a few blocks, copying one after
// another is faster than a call of memmove.
void CopyBlocksDown(const std::uint8_t* from, std::uint32_t length, std::uint8_t* to) noexcept {
  constexpr std::uint32_t kFew = 64;
  if (length > kFew) {
    std::memmove(to, from, length);
    return;
  }
  for (std::uint32_t done = 0; done < length; done += kBlockSize) {
    std::uint64_t block = 0;
    std::memcpy(&block, from + done, sizeof block);
    std::memcpy(to + done, &block, sizeof block);
  }
}

void AddBlock(std::uint8_t* block, const std::uint8_t* other) noexcept {
  for (std::size_t i = 0; i < kBlockSize; ++i) block[i] ^= other[i];
}

}  // namespace

std::uint32_t PaddingLength(const std::uint8_t* block) noexcept {
  const std::uint64_t bytes = LoadBlock(block);
  const auto count = static_cast<std::uint32_t>(bytes >> 56);
  const std::uint64_t different = bytes ^ count * kEveryByte;
  const auto isCountBad = static_cast<std::uint32_t>(count - 1 >= kBlockSize);
  const auto differs = static_cast<std::uint32_t>((different >> ((64 - 8 * count) & 63)) != 0);
  return count & ((isCountBad | differs) - 1);
}

void PadEach(const MessageBatch& batch) noexcept {
  const std::uint8_t* message = batch.messages.data();
  std::uint8_t* result = batch.results.data();
  for (std::uint32_t& length : batch.lengths) {
    const auto padded = static_cast<std::uint32_t>(PaddedLength(length));
    std::memset(result + padded - kBlockSize, static_cast<int>(padded - length), kBlockSize);
    std::copy_n(message, length, result);
    message += length;
    result += padded;
    length = padded;
  }
  std::ranges::fill(batch.failed, false);
}

std::size_t CopyWholeBlocks(const MessageBatch& batch) noexcept {
  const std::uint8_t* message = batch.messages.data();
  const std::uint8_t* run = message;  // where messages begin that are not copied yet
  std::uint8_t* result = batch.results.data();
  const auto copyRun = [&] { result = std::copy(run, message, result); };
  for (std::size_t i = 0; i < batch.lengths.size(); ++i) {
    const std::uint32_t length = batch.lengths[i];
    batch.failed[i] = length == 0 || length % kBlockSize != 0;
    if (batch.failed[i]) {
      copyRun();
      run = message + length;
    }
    message += length;
  }
  copyRun();
  return static_cast<std::size_t>(result - batch.results.data());
}

// The first block of each message has the last ciphertext block of the one before added to it,
// instead of the zero initialization vector.
void SeparateEach(const MessageBatch& batch) noexcept {
  constexpr std::array<std::uint8_t, kBlockSize> kZeros{};
  const std::uint8_t* before = kZeros.data();
  const std::uint8_t* message = batch.messages.data();
  std::uint8_t* place = batch.results.data();
  std::uint8_t* result = place;
  for (std::size_t i = 0; i < batch.lengths.size(); ++i) {
    std::uint32_t& length = batch.lengths[i];
    message += length;
    if (batch.failed[i]) {
      length = 0;
      continue;
    }
    AddBlock(place, before);
    before = message - kBlockSize;
    const std::uint32_t padding = PaddingLength(place + length - kBlockSize);
    CopyBlocksDown(place, length, result);
    place += length;
    batch.failed[i] = padding == 0;
    length = padding == 0 ? 0 : length - padding;
    result += length;
  }
}

}  // namespace latchkey::provider
