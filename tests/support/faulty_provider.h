// A provider of which any one call can be made to fail, and that allocates nothing itself.
#pragma once

#include <cstdint>

#include "provider/crypto_provider.h"

namespace latchkey::test {

// Passes each call on to a provider and counts the calls and the open handles. Without a provider
// each call succeeds and keeps nothing of what it is given: every digest is the same, and a cipher
// inverts each bit. For tests that watch memory or make it fail; ScriptedProvider keeps a journal,
// and allocates for that. Used by one thread.
class FaultyProvider : public provider::CryptoProvider {
 public:
  using HCRYPTPROV = provider::HCRYPTPROV;
  using HCRYPTHASH = provider::HCRYPTHASH;
  using HCRYPTKEY = provider::HCRYPTKEY;
  using AlgorithmId = provider::AlgorithmId;

  enum class Manner { Refuse, Throw };

  explicit FaultyProvider(CryptoProvider* real = &provider::SystemCryptoProvider()) noexcept
      : real_(real) {}

  // Makes the nth call from now (the first is 1) fail, by false or by a TypeMismatch fault. A
  // closing call closes the handle all the same, and so may come once more after it threw. 0 calls
  // it off. An opening of a context that is refused is refused again until the next FailCall.
  void FailCall(int nth, Manner manner) noexcept;

  // Whether a call that was to fail is still to come.
  [[nodiscard]] bool FailurePending() const noexcept { return callsToFailure_ > 0; }

  // Handles of every kind that were made and not yet closed.
  [[nodiscard]] int OpenHandles() const noexcept { return open_; }
  // Closing calls for a handle that was not open, but those that may come again.
  [[nodiscard]] int ClosedTwice() const noexcept { return closedTwice_; }

  bool CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer, const char* szProvider,
                            std::uint32_t dwProvType, std::uint32_t dwFlags) override;
  bool CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) override;
  bool CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey, std::uint32_t dwFlags,
                       HCRYPTHASH* phHash) override;
  bool CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData, std::uint32_t dwDataLen,
                     std::uint32_t dwFlags) override;
  bool CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam, std::uint8_t* pbData,
                         std::uint32_t* pdwDataLen, std::uint32_t dwFlags) override;
  bool CryptDestroyHash(HCRYPTHASH hHash) override;
  bool CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                      std::uint32_t dwFlags, HCRYPTKEY* phKey) override;
  bool CryptDestroyKey(HCRYPTKEY hKey) override;
  bool CryptDuplicateKey(HCRYPTKEY hKey, std::uint32_t* pdwReserved, std::uint32_t dwFlags,
                         HCRYPTKEY* phKey) override;
  bool CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam, const std::uint8_t* pbData,
                        std::uint32_t dwFlags) override;
  bool CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                    std::uint32_t dwBufLen) override;
  bool CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen) override;
  bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) override;
  [[nodiscard]] std::uint32_t GetLastError() const override {
    return real_ == nullptr ? 0 : real_->GetLastError();
  }

 private:
  // True when this call is the one to be refused; throws when it is the one to throw.
  bool Fails();
  // Carries out a call that is not to fail: `call` on the real provider, or plain success.
  template <class Work>
  bool Perform(Work&& call);
  template <class Work>
  bool Close(std::uintptr_t handle, Work&& call);
  bool Opened(std::uintptr_t* handle, bool done) noexcept;
  bool Transformed(std::uint8_t* data, std::uint32_t length, bool done) noexcept;

  CryptoProvider* real_;
  int callsToFailure_ = 0;
  Manner manner_ = Manner::Refuse;
  bool refusesContexts_ = false;
  int open_ = 0;
  int closedTwice_ = 0;
  std::uintptr_t lastPlainHandle_ = 0;
  std::uintptr_t closedByThrowing_ = 0;
};

}  // namespace latchkey::test
