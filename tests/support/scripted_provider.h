// A cryptographic provider that a test controls, and that records its calls.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "provider/crypto_provider.h"
#include "tests/support/call_journal.h"
#include "tests/support/call_plan.h"
#include "tests/support/faulty_provider.h"

namespace latchkey::test {

// Passes each call to a real provider; without one, calls succeed as in FaultyProvider. Any single
// call can be made to fail or throw.
//
// Records every call with its arguments in the journal; data of more than 64 bytes is recorded as
// empty. Handles are its own numbers, each used once. Using a handle that is not open, closing one
// twice, closing a provider before its hashes and keys, or leaving one open at the end fails the
// test.
class ScriptedProvider : public provider::CryptoProvider {
 public:
  using HCRYPTPROV = provider::HCRYPTPROV;
  using HCRYPTHASH = provider::HCRYPTHASH;
  using HCRYPTKEY = provider::HCRYPTKEY;
  using AlgorithmId = provider::AlgorithmId;

  explicit ScriptedProvider(CallJournal& journal,
                            CryptoProvider* real = &provider::SystemCryptoProvider())
      : journal_(journal), real_(real != nullptr ? *real : plain_) {}
  ~ScriptedProvider() override;

  // Makes the nth call from now on (or CallPlan::kEveryCall) of a function fail, throw, or do
  // something else and then fail. Its output parameters are not written. A failing call that closes
  // a handle still closes it, and may be repeated once after it threw.
  void FailAt(std::string_view call, int nth, std::uint32_t error = provider::kErrorProviderFailed);
  template <class Exception>
  void ThrowAt(std::string_view call, int nth, Exception exception) {
    plan_.At(call, nth, [exception] { throw exception; });
  }
  void FailAfter(std::string_view call, int nth, CallPlan::Action action) {
    plan_.At(call, nth, std::move(action));
  }
  // From now on all calls succeed again.
  void Recover() { plan_.Forget(); }

  // From now on all data is recorded as empty, so that the journal keeps no copy of it.
  void LeaveDataOut() { longestData_ = 0; }

  // Sets the digest that CryptGetHashParam returns for any data.
  void SetDigest(Bytes digest) { digest_ = std::move(digest); }
  // Sets the bytes that CryptGenRandom writes; it repeats them as needed.
  void SetRandomBytes(Bytes bytes) { randomBytes_ = std::move(bytes); }

  // The open handles, contexts first.
  [[nodiscard]] std::vector<HandleName> OpenHandles() const;

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
  [[nodiscard]] std::uint32_t GetLastError() const override { return lastError_; }

 private:
  using Kind = HandleName::Kind;

  struct Handle {
    HandleName name;
    std::uintptr_t real = 0;
  };

  // Makes a call, as planned or with `work` on the real provider, and records it.
  template <class Work>
  bool Perform(const Call& call, Work&& work);
  // The same for a call that closes `handle`, which it does even if a failure is planned; `work`
  // closes the real one.
  template <class Work>
  bool PerformClose(const Call& call, Kind kind, std::uintptr_t handle, Work&& work);
  // The same for a call that makes a handle; `work` sets the real one.
  template <class Work>
  bool PerformOpen(const Call& call, Kind kind, std::uintptr_t* handle, Work&& work);

  [[nodiscard]] Bytes Data(const std::uint8_t* data, std::uint32_t length) const;
  [[nodiscard]] HandleName NameOf(std::uintptr_t handle) const;
  [[nodiscard]] std::uintptr_t RealOf(std::uintptr_t handle, Kind kind) const;

  CallJournal& journal_;
  FaultyProvider plain_{nullptr};
  CryptoProvider& real_;
  CallPlan plan_;
  std::map<std::uintptr_t, Handle> open_;
  std::map<std::uintptr_t, Handle> closedByThrowing_;
  std::map<Kind, int> made_;
  std::optional<Bytes> digest_;
  std::optional<Bytes> randomBytes_;
  std::uint32_t lastError_ = 0;
  std::uint32_t longestData_ = 64;
};

}  // namespace latchkey::test
