#include "tests/support/faulty_provider.h"

#include <utility>

#include "latchkey/fault.h"

namespace latchkey::test {

void FaultyProvider::FailCall(int nth, Manner manner) noexcept {
  callsToFailure_ = nth;
  manner_ = manner;
  refusesContexts_ = false;
}

bool FaultyProvider::Fails() {
  if (callsToFailure_ == 0 || --callsToFailure_ > 0) return false;
  if (manner_ == Manner::Throw) throw Fault(FaultNumber::TypeMismatch);
  return true;
}

bool FaultyProvider::Opened(bool done) noexcept {
  if (done) ++open_;
  return done;
}

template <class Close>
bool FaultyProvider::CloseHandle(std::uintptr_t handle, Close&& close) {
  if (handle == std::exchange(closedByThrowing_, 0)) return true;
  const bool closed = std::forward<Close>(close)(handle);
  closed ? --open_ : ++closedTwice_;
  closedByThrowing_ = handle;
  const bool refused = Fails();
  closedByThrowing_ = 0;
  return closed && !refused;
}

bool FaultyProvider::CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer,
                                          const char* szProvider, std::uint32_t dwProvType,
                                          std::uint32_t dwFlags) {
  refusesContexts_ = refusesContexts_ || Fails();
  return !refusesContexts_ &&
         Opened(real_.CryptAcquireContextA(phProv, szContainer, szProvider, dwProvType, dwFlags));
}

bool FaultyProvider::CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) {
  return CloseHandle(
      hProv, [&](std::uintptr_t handle) { return real_.CryptReleaseContext(handle, dwFlags); });
}

bool FaultyProvider::CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey,
                                     std::uint32_t dwFlags, HCRYPTHASH* phHash) {
  return !Fails() && Opened(real_.CryptCreateHash(hProv, Algid, hKey, dwFlags, phHash));
}

bool FaultyProvider::CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData,
                                   std::uint32_t dwDataLen, std::uint32_t dwFlags) {
  return !Fails() && real_.CryptHashData(hHash, pbData, dwDataLen, dwFlags);
}

bool FaultyProvider::CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam,
                                       std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                                       std::uint32_t dwFlags) {
  return !Fails() && real_.CryptGetHashParam(hHash, dwParam, pbData, pdwDataLen, dwFlags);
}

bool FaultyProvider::CryptDestroyHash(HCRYPTHASH hHash) {
  return CloseHandle(hHash,
                     [this](std::uintptr_t handle) { return real_.CryptDestroyHash(handle); });
}

bool FaultyProvider::CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                                    std::uint32_t dwFlags, HCRYPTKEY* phKey) {
  return !Fails() && Opened(real_.CryptDeriveKey(hProv, Algid, hBaseData, dwFlags, phKey));
}

bool FaultyProvider::CryptDestroyKey(HCRYPTKEY hKey) {
  return CloseHandle(hKey, [this](std::uintptr_t handle) { return real_.CryptDestroyKey(handle); });
}

bool FaultyProvider::CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam,
                                      const std::uint8_t* pbData, std::uint32_t dwFlags) {
  return !Fails() && real_.CryptSetKeyParam(hKey, dwParam, pbData, dwFlags);
}

bool FaultyProvider::CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                  std::uint32_t dwFlags, std::uint8_t* pbData,
                                  std::uint32_t* pdwDataLen, std::uint32_t dwBufLen) {
  return !Fails() && real_.CryptEncrypt(hKey, hHash, Final, dwFlags, pbData, pdwDataLen, dwBufLen);
}

bool FaultyProvider::CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                  std::uint32_t dwFlags, std::uint8_t* pbData,
                                  std::uint32_t* pdwDataLen) {
  return !Fails() && real_.CryptDecrypt(hKey, hHash, Final, dwFlags, pbData, pdwDataLen);
}

bool FaultyProvider::CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) {
  return !Fails() && real_.CryptGenRandom(hProv, dwLen, pbBuffer);
}

}  // namespace latchkey::test
