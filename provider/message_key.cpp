// What threads share: the provider, and the message key of a provider that has none, in which each
// message works on its own duplicate of a key.
#include <atomic>
#include <mutex>

#include "provider/crypto_provider.h"

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
  struct Owner {
    CryptoProvider& provider;
    HCRYPTKEY key = 0;
    ~Owner() {
      try {
        if (key != 0) provider.CryptDestroyKey(key);
      } catch (...) {  // NOLINT(bugprone-empty-catch): the message is already done
      }
    }
  };

  template <class Work>
  bool OnDuplicate(Work&& work) const {
    HCRYPTKEY made = 0;  // a refused call may have written one
    if (!Duplicate(&made)) return false;
    const Owner duplicate{provider_, made};
    return work(made);
  }

  CryptoProvider& provider_;
  HCRYPTKEY key_;
  mutable std::mutex mutex_;
};

}  // namespace

CryptoProvider& SharedCryptoProvider() {
  CryptoProvider* const provider = replacement;
  return provider != nullptr ? *provider : SystemCryptoProvider();
}

void ReplaceSharedCryptoProvider(CryptoProvider* provider) noexcept { replacement = provider; }

std::unique_ptr<const MessageKey> CryptoProvider::MakeMessageKey(HCRYPTKEY hKey) {
  return std::make_unique<DuplicatedKey>(*this, hKey);
}

}  // namespace latchkey::provider
