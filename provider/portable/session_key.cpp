#include "provider/portable/session_key.h"

#include <cstring>
#include <new>
#include <span>
#include <utility>

#include "provider/block_size.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "provider/portable/padding.h"

namespace latchkey::provider {
namespace {

bool IsWholeBlocks(std::uint32_t length) noexcept { return length % kBlockSize == 0; }

}  // namespace

SessionKey::SessionKey(HCRYPTPROV provider, std::shared_ptr<const Cipher> cipher)
    : provider_(provider), cipher_(std::move(cipher)) {
  if (cipher_->IsBlockCipher()) {
    state_.batch =
        std::make_unique<std::uint8_t[]>(kLargestBatch);  // NOLINT(modernize-avoid-c-arrays)
  }
  cipher_->Start(state_);
}

SessionKey::SessionKey(std::shared_ptr<const Cipher> cipher, std::size_t length) noexcept
    : provider_(0), cipher_(std::move(cipher)) {
  if (cipher_->UsesBatch(length)) {
    state_.batch.reset(new (std::nothrow) std::uint8_t[kLargestBatch]);
  }
  cipher_->Start(state_);
}

SessionKey::SessionKey(const SessionKey& other) : SessionKey(other.provider_, other.cipher_) {
  state_.stream = other.state_.stream;
  state_.feedback = other.state_.feedback;
}

void SessionKey::Replace(std::shared_ptr<const Cipher> cipher) noexcept {
  cipher_ = std::move(cipher);
  cipher_->Start(state_);
}

std::uint32_t SessionKey::Encrypt(bool final, std::uint8_t* data, std::uint32_t& length,
                                  std::uint32_t room) noexcept {
  const bool pads = final && cipher_->IsBlockCipher();
  if (cipher_->IsBlockCipher() && !final && !IsWholeBlocks(length)) return kErrorBadData;
  const std::uint64_t needed = pads ? PaddedLength(length) : length;
  const auto padding = static_cast<std::uint8_t>(needed - length);
  if (needed > room) {
    length = static_cast<std::uint32_t>(needed);
    return kErrorMoreData;
  }
  if (padding > 0) std::memset(data + length, padding, padding);
  length += padding;
  cipher_->Encrypt(std::span(data, length), state_);
  if (final) cipher_->Start(state_);
  return 0;
}

std::uint32_t SessionKey::Decrypt(bool final, std::uint8_t* data, std::uint32_t& length) noexcept {
  const bool pads = final && cipher_->IsBlockCipher();
  if (cipher_->IsBlockCipher() && !IsWholeBlocks(length)) return kErrorBadData;
  if (pads && length == 0) return kErrorBadData;
  cipher_->Decrypt(std::span(data, length), state_);
  if (final) cipher_->Start(state_);
  if (!pads) return 0;
  const std::uint32_t padding = PaddingLength(data + length - kBlockSize);
  if (padding == 0) return kErrorBadData;
  length -= padding;
  return 0;
}

}  // namespace latchkey::provider
