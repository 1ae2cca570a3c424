// A provider that can make any single call fail, and allocates nothing itself.
#pragma once

#include <cstdint>

#include "provider/crypto_provider.h"

namespace latchkey::test {

// Passes each call to a provider, and counts the calls and the open handles. Without a provider
// each call succeeds and keeps no data: every digest is the same, and a cipher inverts each bit.
// For tests that watch memory or make allocations fail; ScriptedProvider keeps a journal, which it
// allocates. Used by one thread.
class FaultyProvider : public provider::CryptoProvider {
 public:
  using HCRYPTPROV = provider::HCRYPTPROV;
  using HCRYPTHASH = provider::HCRYPTHASH;
  using HCRYPTKEY = provider::HCRYPTKEY;
  using AlgorithmId = provider::AlgorithmId;

  enum class Manner { Refuse, Throw };

  explicit FaultyProvider(CryptoProvider* real = &provider::SystemCryptoProvider()) noexcept
      : real_(real) {}

  // Makes the nth call from now (the first is 1) return false or raise a TypeMismatch fault; 0
  // cancels it. A failing call that closes a handle still closes it, and may be repeated once after
  // it raised a fault. Once opening a context is refused, all further attempts are refused until
  // the next FailCall.
  void FailCall(int nth, Manner manner) noexcept;

  // Whether the call to fail has not happened yet.
  [[nodiscard]] bool FailurePending() const noexcept { return callsToFailure_ > 0; }

  // The number of handles of all kinds that were made and not closed.
  [[nodiscard]] int OpenHandles() const noexcept { return open_; }
  // The number of calls that close a handle that is not open, without permitted repetitions.
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
  // Returns true if this call must be refused; throws if it must raise a fault.
  bool Fails();
  // Makes a call that does not fail: `call` on the real provider, or success without one.
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
