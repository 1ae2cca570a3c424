// The provider that threads share, and the default message key, which processes each message with a
// duplicate of its key.
#include <algorithm>
#include <atomic>
#include <mutex>

#include "provider/provider_handles.h"

namespace latchkey::provider {
namespace {

std::atomic<CryptoProvider*> replacement{nullptr};

class DuplicatedKey final : public MessageKey {
 public:
  DuplicatedKey(CryptoProvider& provider, HCRYPTKEY key) noexcept
      : provider_(provider), key_(key) {}

  bool Encrypt(std::uint8_t* pbData, std::uint32_t* pdwDataLen,
               std::uint32_t dwBufLen) const override {
    return OnDuplicate([&](HCRYPTKEY key) {
      return provider_.CryptEncrypt(key, 0, true, 0, pbData, pdwDataLen, dwBufLen);
    });
  }

  bool Decrypt(std::uint8_t* pbData, std::uint32_t* pdwDataLen) const override {
    return OnDuplicate(
        [&](HCRYPTKEY key) { return provider_.CryptDecrypt(key, 0, true, 0, pbData, pdwDataLen); });
  }

  bool Duplicate(HCRYPTKEY* phKey) const override {
    const std::lock_guard lock(mutex_);  // a handle is used by one thread at a time
    return provider_.CryptDuplicateKey(key_, nullptr, 0, phKey);
  }

 private:
  template <class Work>
  bool OnDuplicate(Work&& work) const {
    const UniqueKey duplicate =
        Receive<KeyTrait>(provider_, [&](HCRYPTKEY* made) { return Duplicate(made); });
    return duplicate && work(duplicate.Get().value);
  }

  CryptoProvider& provider_;
  HCRYPTKEY key_;
  mutable std::mutex mutex_;
};

// Copies each message to the place of its result, where `work` processes it.
template <class Work>
void ForEach(const MessageBatch& batch, Work&& work) {
  std::span<const std::uint8_t> rest = batch.messages;
  std::span<std::uint8_t> room = batch.results;
  for (std::size_t i = 0; i < batch.lengths.size(); ++i) {
    std::uint32_t& length = batch.lengths[i];
    std::ranges::copy(rest.first(length), room.begin());
    rest = rest.subspan(length);
    batch.failed[i] = !work(room, length);
    if (batch.failed[i]) length = 0;
    room = room.subspan(length);
  }
}

}  // namespace

void MessageKey::EncryptEach(const MessageBatch& batch) const {
  ForEach(batch, [this](std::span<std::uint8_t> room, std::uint32_t& length) {
    const auto size = std::min<std::size_t>(room.size(), UINT32_MAX);
    return Encrypt(room.data(), &length, static_cast<std::uint32_t>(size));
  });
}

void MessageKey::DecryptEach(const MessageBatch& batch) const {
  ForEach(batch, [this](std::span<std::uint8_t> room, std::uint32_t& length) {
    return Decrypt(room.data(), &length);
  });
}

CryptoProvider& SharedCryptoProvider() {
  CryptoProvider* const provider = replacement;
  return provider != nullptr ? *provider : SystemCryptoProvider();
}

void ReplaceSharedCryptoProvider(CryptoProvider* provider) noexcept { replacement = provider; }

std::unique_ptr<const MessageKey> CryptoProvider::MakeMessageKey(HCRYPTKEY hKey) {
  return std::make_unique<DuplicatedKey>(*this, hKey);
}

}  // namespace latchkey::provider
