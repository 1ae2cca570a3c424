#include "tests/system/trust/resource_usage.h"

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "crypto/crypto_state.h"
#include "diagnostics/thread_state.h"

namespace latchkey::test {
namespace {

using provider::AlgorithmId;
using provider::CryptoProvider;
using provider::HCRYPTHASH;
using provider::HCRYPTKEY;
using provider::HCRYPTPROV;

// The platform's provider, with a count of open handles.
class CountingProvider final : public CryptoProvider {
 public:
  [[nodiscard]] std::int64_t Open() const { return open_; }

  bool CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer, const char* szProvider,
                            std::uint32_t dwProvType, std::uint32_t dwFlags) override {
    return Opened(real_.CryptAcquireContextA(phProv, szContainer, szProvider, dwProvType, dwFlags));
  }
  bool CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) override {
    return Closed(real_.CryptReleaseContext(hProv, dwFlags));
  }
  bool CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey, std::uint32_t dwFlags,
                       HCRYPTHASH* phHash) override {
    return Opened(real_.CryptCreateHash(hProv, Algid, hKey, dwFlags, phHash));
  }
  bool CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData, std::uint32_t dwDataLen,
                     std::uint32_t dwFlags) override {
    return real_.CryptHashData(hHash, pbData, dwDataLen, dwFlags);
  }
  bool CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam, std::uint8_t* pbData,
                         std::uint32_t* pdwDataLen, std::uint32_t dwFlags) override {
    return real_.CryptGetHashParam(hHash, dwParam, pbData, pdwDataLen, dwFlags);
  }
  bool CryptDestroyHash(HCRYPTHASH hHash) override { return Closed(real_.CryptDestroyHash(hHash)); }
  bool CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                      std::uint32_t dwFlags, HCRYPTKEY* phKey) override {
    return Opened(real_.CryptDeriveKey(hProv, Algid, hBaseData, dwFlags, phKey));
  }
  bool CryptDestroyKey(HCRYPTKEY hKey) override { return Closed(real_.CryptDestroyKey(hKey)); }
  bool CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam, const std::uint8_t* pbData,
                        std::uint32_t dwFlags) override {
    return real_.CryptSetKeyParam(hKey, dwParam, pbData, dwFlags);
  }
  bool CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                    std::uint32_t dwBufLen) override {
    return real_.CryptEncrypt(hKey, hHash, Final, dwFlags, pbData, pdwDataLen, dwBufLen);
  }
  bool CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen) override {
    return real_.CryptDecrypt(hKey, hHash, Final, dwFlags, pbData, pdwDataLen);
  }
  bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) override {
    return real_.CryptGenRandom(hProv, dwLen, pbBuffer);
  }
  [[nodiscard]] std::uint32_t GetLastError() const override { return real_.GetLastError(); }

 private:
  bool Opened(bool done) {
    open_ += done ? 1 : 0;
    return done;
  }
  bool Closed(bool done) {
    open_ -= done ? 1 : 0;
    return done;
  }

  CryptoProvider& real_ = provider::SystemCryptoProvider();
  std::int64_t open_ = 0;
};

CountingProvider& Counter() {
  static CountingProvider counter;
  return counter;
}

std::uint64_t ResidentBytes() {
  std::uint64_t size = 0;
  std::uint64_t resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

std::uint64_t OpenFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<std::uint64_t>(std::distance(begin(files), end(files)));
}

}  // namespace

void CountProviderHandles() { ThisThreadCrypto().provider = &Counter(); }

ResourceUsage CurrentUsage() {
  return {ResidentBytes(), mallinfo2().uordblks, OpenFiles(), Counter().Open()};
}

}  // namespace latchkey::test
