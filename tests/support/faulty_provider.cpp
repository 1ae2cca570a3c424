#include "tests/support/faulty_provider.h"

#include <span>
#include <utility>

#include "latchkey/fault.h"

namespace latchkey::test {
namespace {

// Letters in an order that no table of the program has, so that a search of the process finds only
// copies of a digest.
void FillWithDigest(std::span<std::uint8_t> digest) {
  std::uint8_t state = 0x5A;
  for (std::uint8_t& byte : digest) {
    state = static_cast<std::uint8_t>(state * 5 + 59);
    byte = static_cast<std::uint8_t>('A' + state % 26);
  }
}

}  // namespace

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

template <class Work>
bool FaultyProvider::Perform(Work&& call) {
  return !Fails() && (real_ == nullptr || std::forward<Work>(call)());
}

bool FaultyProvider::Opened(std::uintptr_t* handle, bool done) noexcept {
  if (!done) return false;
  if (real_ == nullptr) *handle = ++lastPlainHandle_;
  ++open_;
  return true;
}

template <class Work>
bool FaultyProvider::Close(std::uintptr_t handle, Work&& call) {
  if (handle == closedByThrowing_) {
    closedByThrowing_ = 0;
    return true;
  }
  const bool closed = real_ == nullptr || std::forward<Work>(call)();
  closed ? --open_ : ++closedTwice_;
  const std::uintptr_t before = std::exchange(closedByThrowing_, handle);
  const bool refused = Fails();
  closedByThrowing_ = before;
  return closed && !refused;
}

bool FaultyProvider::Transformed(std::uint8_t* data, std::uint32_t length, bool done) noexcept {
  if (done && real_ == nullptr) {
    for (std::uint8_t& byte : std::span(data, length)) byte = static_cast<std::uint8_t>(~byte);
  }
  return done;
}

bool FaultyProvider::CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer,
                                          const char* szProvider, std::uint32_t dwProvType,
                                          std::uint32_t dwFlags) {
  refusesContexts_ = refusesContexts_ || Fails();
  return !refusesContexts_ &&
         Opened(phProv,
                real_ == nullptr || real_->CryptAcquireContextA(phProv, szContainer, szProvider,
                                                                dwProvType, dwFlags));
}

bool FaultyProvider::CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) {
  return Close(hProv, [&] { return real_->CryptReleaseContext(hProv, dwFlags); });
}

bool FaultyProvider::CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey,
                                     std::uint32_t dwFlags, HCRYPTHASH* phHash) {
  return Opened(
      phHash, Perform([&] { return real_->CryptCreateHash(hProv, Algid, hKey, dwFlags, phHash); }));
}

bool FaultyProvider::CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData,
                                   std::uint32_t dwDataLen, std::uint32_t dwFlags) {
  return Perform([&] { return real_->CryptHashData(hHash, pbData, dwDataLen, dwFlags); });
}

bool FaultyProvider::CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam,
                                       std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                                       std::uint32_t dwFlags) {
  const bool done = Perform(
      [&] { return real_->CryptGetHashParam(hHash, dwParam, pbData, pdwDataLen, dwFlags); });
  if (done && real_ == nullptr) FillWithDigest(std::span(pbData, *pdwDataLen));
  return done;
}

bool FaultyProvider::CryptDestroyHash(HCRYPTHASH hHash) {
  return Close(hHash, [&] { return real_->CryptDestroyHash(hHash); });
}

bool FaultyProvider::CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                                    std::uint32_t dwFlags, HCRYPTKEY* phKey) {
  return Opened(phKey, Perform([&] {
                  return real_->CryptDeriveKey(hProv, Algid, hBaseData, dwFlags, phKey);
                }));
}

bool FaultyProvider::CryptDestroyKey(HCRYPTKEY hKey) {
  return Close(hKey, [&] { return real_->CryptDestroyKey(hKey); });
}

bool FaultyProvider::CryptDuplicateKey(HCRYPTKEY hKey, std::uint32_t* pdwReserved,
                                       std::uint32_t dwFlags, HCRYPTKEY* phKey) {
  return Opened(
      phKey, Perform([&] { return real_->CryptDuplicateKey(hKey, pdwReserved, dwFlags, phKey); }));
}

bool FaultyProvider::CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam,
                                      const std::uint8_t* pbData, std::uint32_t dwFlags) {
  return Perform([&] { return real_->CryptSetKeyParam(hKey, dwParam, pbData, dwFlags); });
}

bool FaultyProvider::CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                  std::uint32_t dwFlags, std::uint8_t* pbData,
                                  std::uint32_t* pdwDataLen, std::uint32_t dwBufLen) {
  const bool done = Perform([&] {
    return real_->CryptEncrypt(hKey, hHash, Final, dwFlags, pbData, pdwDataLen, dwBufLen);
  });
  return Transformed(pbData, *pdwDataLen, done);
}

bool FaultyProvider::CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                  std::uint32_t dwFlags, std::uint8_t* pbData,
                                  std::uint32_t* pdwDataLen) {
  const bool done =
      Perform([&] { return real_->CryptDecrypt(hKey, hHash, Final, dwFlags, pbData, pdwDataLen); });
  return Transformed(pbData, *pdwDataLen, done);
}

bool FaultyProvider::CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) {
  return Perform([&] { return real_->CryptGenRandom(hProv, dwLen, pbBuffer); });
}

}  // namespace latchkey::test
