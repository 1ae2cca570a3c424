#include "provider/crypto_provider.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "base/handle_table.h"
#include "base/never_destroyed.h"
#include "base/stack_wipe.h"
#include "platform/fork_hold.h"
#include "platform/system_random.h"
#include "provider/portable/hash_object.h"
#include "provider/portable/key_derivation.h"
#include "provider/portable/session_key.h"

namespace latchkey::provider {
namespace {

thread_local std::uint32_t lastError = 0;

bool Fail(std::uint32_t error) noexcept {
  lastError = error;
  return false;
}

// The default provider has the strengths of the enhanced one, as on Windows XP and later.
std::optional<ProviderKind> ProviderNamed(const char* name) {
  const std::string_view wanted = name != nullptr ? name : "";
  if (wanted.empty() || wanted == kEnhancedProviderName) return ProviderKind::Enhanced;
  if (wanted == kBaseProviderName) return ProviderKind::Base;
  return std::nullopt;
}

// A session of the cipher for each message.
class SharedCipherKey final : public MessageKey {
 public:
  SharedCipherKey(CryptoProvider& provider, HCRYPTKEY key,
                  std::shared_ptr<const Cipher> cipher) noexcept
      : provider_(provider), key_(key), cipher_(std::move(cipher)) {}

  bool Encrypt(std::uint8_t* pbData, std::uint32_t* pdwDataLen,
               std::uint32_t dwBufLen) const override {
    const StackWipe wipe;
    SessionKey session(cipher_, 0);  // encryption has no batches
    const std::uint32_t error = session.Encrypt(true, pbData, *pdwDataLen, dwBufLen);
    return error == 0 || Fail(error);
  }

  bool Decrypt(std::uint8_t* pbData, std::uint32_t* pdwDataLen) const override {
    const StackWipe wipe;
    SessionKey session(cipher_, *pdwDataLen);
    const std::uint32_t error = session.Decrypt(true, pbData, *pdwDataLen);
    return error == 0 || Fail(error);
  }

  void EncryptEach(const MessageBatch& batch) const override {
    const StackWipe wipe;
    cipher_->EncryptEach(batch);
  }

  void DecryptEach(const MessageBatch& batch) const override {
    const StackWipe wipe;
    cipher_->DecryptEach(batch);
  }

  bool Duplicate(HCRYPTKEY* phKey) const override {
    return provider_.CryptDuplicateKey(key_, nullptr, 0, phKey);
  }

 private:
  CryptoProvider& provider_;
  HCRYPTKEY key_;
  std::shared_ptr<const Cipher> cipher_;
};

// The order of the checks, and so the code of a call that is wrong in several ways, is CryptoAPI's:
// first the handles, then the flags, then the rest.
class NettleProvider final : public CryptoProvider {
 public:
  bool CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer, const char* szProvider,
                            std::uint32_t dwProvType, std::uint32_t dwFlags) override {
    const std::optional<ProviderKind> kind = ProviderNamed(szProvider);
    if (!kind) return Fail(kErrorKeysetNotDefined);
    if (dwProvType != kProviderTypeRsaFull) return Fail(kErrorProviderTypeMismatch);
    if (szContainer != nullptr && *szContainer != '\0') return Fail(kErrorBadFlags);
    if (dwFlags == kDeleteKeySet) return keySetExists_.exchange(false) || Fail(kErrorBadKeySet);
    if (dwFlags == kNewKeySet) {
      if (keySetExists_.exchange(true)) return Fail(kErrorExists);
    } else if (dwFlags != kVerifyContext && !keySetExists_) {
      return Fail(kErrorBadKeySet);
    }
    *phProv = contexts_.Add(std::make_shared<ProviderKind>(*kind));
    return true;
  }

  // Destroys the context's remaining hashes and keys. Wrong flags are an error, but the context is
  // released too.
  bool CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) override {
    if (!contexts_.Take(hProv)) return Fail(kErrorInvalidParameter);
    const auto isOurs = [hProv](const auto& object) { return object.Provider() == hProv; };
    hashes_.RemoveIf(isOurs);
    keys_.RemoveIf(isOurs);
    return dwFlags == 0 || Fail(kErrorBadFlags);
  }

  bool CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY /*hKey*/,
                       std::uint32_t dwFlags, HCRYPTHASH* phHash) override {
    if (!contexts_.Find(hProv)) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    const nettle_hash* const algorithm = HashAlgorithm(Algid);
    if (algorithm == nullptr) return Fail(kErrorBadAlgorithm);
    *phHash = hashes_.Add(std::make_shared<HashObject>(hProv, *algorithm));
    return true;
  }

  bool CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData, std::uint32_t dwDataLen,
                     std::uint32_t dwFlags) override {
    const StackWipe wipe;
    const auto hash = hashes_.Find(hHash);
    if (!hash) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    return hash->Add(std::span(pbData, dwDataLen)) || Fail(kErrorBadHashState);
  }

  bool CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam, std::uint8_t* pbData,
                         std::uint32_t* pdwDataLen, std::uint32_t dwFlags) override {
    const StackWipe wipe;
    const auto hash = hashes_.Find(hHash);
    if (!hash) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    if (dwParam != kHashValueParameter) return Fail(kErrorBadType);
    const WipedBytes& value = hash->Value();
    const std::uint32_t room = *pdwDataLen;
    *pdwDataLen = static_cast<std::uint32_t>(value.size());
    if (room < value.size()) return Fail(kErrorMoreData);
    std::copy(value.begin(), value.end(), pbData);
    return true;
  }

  bool CryptDestroyHash(HCRYPTHASH hHash) override {
    return hashes_.Take(hHash) || Fail(kErrorInvalidParameter);
  }

  bool CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                      std::uint32_t dwFlags, HCRYPTKEY* phKey) override {
    const StackWipe wipe;
    const auto kind = contexts_.Find(hProv);
    const auto hash = hashes_.Find(hBaseData);
    if (!kind || !hash) return Fail(kErrorInvalidParameter);
    const std::uint32_t bits = dwFlags >> kKeyLengthShift;
    if (dwFlags != bits << kKeyLengthShift) return Fail(kErrorBadFlags);
    std::optional<KeyForm> form = KeyFormOf(*kind, Algid);
    if (!form) return Fail(kErrorBadAlgorithm);
    if (bits != 0) form = KeyFormOf(*kind, Algid, bits);
    if (!form) return Fail(kErrorBadData);
    auto cipher = MakeCipher(Algid, DeriveKey(*hash, *form), form->effectiveBits);
    *phKey = keys_.Add(std::make_shared<SessionKey>(hProv, std::move(cipher)));
    return true;
  }

  bool CryptDestroyKey(HCRYPTKEY hKey) override {
    return keys_.Take(hKey) || Fail(kErrorInvalidParameter);
  }

  bool CryptDuplicateKey(HCRYPTKEY hKey, std::uint32_t* pdwReserved, std::uint32_t dwFlags,
                         HCRYPTKEY* phKey) override {
    const StackWipe wipe;
    const auto key = keys_.Find(hKey);
    if (!key || pdwReserved != nullptr) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    *phKey = keys_.Add(std::make_shared<SessionKey>(*key));
    return true;
  }

  bool CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam, const std::uint8_t* pbData,
                        std::uint32_t dwFlags) override {
    const StackWipe wipe;
    const auto key = keys_.Find(hKey);
    if (!key || pbData == nullptr) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    const Cipher& cipher = *key->SharedCipher();
    if (dwParam != kEffectiveKeyLengthParameter || !cipher.HasEffectiveBits()) {
      return Fail(kErrorBadType);
    }
    std::uint32_t bits = 0;
    std::memcpy(&bits, pbData, sizeof bits);
    const auto kind = contexts_.Find(key->Provider());
    if (!kind || !AllowsEffectiveBits(*kind, bits)) return Fail(kErrorBadData);
    key->Replace(cipher.WithEffectiveBits(bits));
    return true;
  }

  bool CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                    std::uint32_t dwBufLen) override {
    const StackWipe wipe;
    const auto key = keys_.Find(hKey);
    if (!key || hHash != 0) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    const std::uint32_t error = key->Encrypt(Final, pbData, *pdwDataLen, dwBufLen);
    return error == 0 || Fail(error);
  }

  bool CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen) override {
    const StackWipe wipe;
    const auto key = keys_.Find(hKey);
    if (!key || hHash != 0) return Fail(kErrorInvalidParameter);
    if (dwFlags != 0) return Fail(kErrorBadFlags);
    const std::uint32_t error = key->Decrypt(Final, pbData, *pdwDataLen);
    return error == 0 || Fail(error);
  }

  // The system's source overwrites every byte and needs no seed.
  bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) override {
    if (!contexts_.Find(hProv)) return Fail(kErrorInvalidParameter);
    return platform::FillRandom(std::span(pbBuffer, dwLen)) || Fail(kErrorProviderFailed);
  }

  [[nodiscard]] std::uint32_t GetLastError() const override { return lastError; }

  [[nodiscard]] std::unique_ptr<const MessageKey> MakeMessageKey(HCRYPTKEY hKey) override {
    const auto key = keys_.Find(hKey);
    return key ? std::make_unique<SharedCipherKey>(*this, hKey, key->SharedCipher()) : nullptr;
  }

  // Another thread may be in a table when the process forks.
  void HoldTables() const {
    contexts_.Hold();
    hashes_.Hold();
    keys_.Hold();
  }
  void ReleaseTables() const {
    contexts_.Release();
    hashes_.Release();
    keys_.Release();
  }

 private:
  HandleTable<ProviderKind> contexts_;
  HandleTable<HashObject> hashes_;
  HandleTable<SessionKey> keys_;
  std::atomic<bool> keySetExists_{false};  // the default-named one, shared by all providers
};

NettleProvider& TheProvider() {
  static NeverDestroyed<NettleProvider> provider;
  return provider.Get();
}

}  // namespace

CryptoProvider& SystemCryptoProvider() {
  static const bool forks = [] {
    platform::HoldDuringFork([] { TheProvider().HoldTables(); },
                             [] { TheProvider().ReleaseTables(); });
    return true;
  }();
  static_cast<void>(forks);
  return TheProvider();
}

}  // namespace latchkey::provider
