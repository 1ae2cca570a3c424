#include "provider/crypto_provider.h"

#include <windows.h>

#include <wincrypt.h>

#include "provider/block_size.h"

namespace latchkey::provider {
namespace {

static_assert(sizeof(HCRYPTPROV) == sizeof(::HCRYPTPROV));
static_assert(sizeof(HCRYPTHASH) == sizeof(::HCRYPTHASH));
static_assert(sizeof(HCRYPTKEY) == sizeof(::HCRYPTKEY));

// With a null data pointer the call would return the needed size instead.
std::uint8_t* NeverNull(std::uint8_t* data) {
  static std::uint8_t nothing = 0;
  return data != nullptr ? data : &nothing;
}

bool IsBlockCipher(HCRYPTKEY key) {
  DWORD bits = 0;
  DWORD size = sizeof(bits);
  return CryptGetKeyParam(key, KP_BLOCKLEN, reinterpret_cast<BYTE*>(&bits), &size, 0) != FALSE &&
         bits != 0;
}

// Data that no block cipher can decrypt. Wine would read the padding before the start of an empty
// buffer, and write past the end of an incomplete last block.
bool IsIncomplete(std::uint32_t length, bool final) {
  return length % kBlockSize != 0 || (final && length == 0);
}

// The Windows types differ from ours in name, and on 32 bits also in type; values are copied
// through variables of the Windows type.
class WindowsCryptoProvider final : public CryptoProvider {
 public:
  bool CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer, const char* szProvider,
                            std::uint32_t dwProvType, std::uint32_t dwFlags) override {
    ::HCRYPTPROV provider = 0;
    if (::CryptAcquireContextA(&provider, szContainer, szProvider, dwProvType, dwFlags) == FALSE) {
      return false;
    }
    *phProv = provider;
    return true;
  }

  bool CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) override {
    return ::CryptReleaseContext(hProv, dwFlags) != FALSE;
  }

  bool CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey, std::uint32_t dwFlags,
                       HCRYPTHASH* phHash) override {
    ::HCRYPTHASH hash = 0;
    if (::CryptCreateHash(hProv, Algid, hKey, dwFlags, &hash) == FALSE) return false;
    *phHash = hash;
    return true;
  }

  bool CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData, std::uint32_t dwDataLen,
                     std::uint32_t dwFlags) override {
    const std::uint8_t nothing = 0;
    const std::uint8_t* const data = pbData != nullptr ? pbData : &nothing;
    return ::CryptHashData(hHash, data, dwDataLen, dwFlags) != FALSE;
  }

  bool CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam, std::uint8_t* pbData,
                         std::uint32_t* pdwDataLen, std::uint32_t dwFlags) override {
    DWORD length = *pdwDataLen;
    const BOOL done = ::CryptGetHashParam(hHash, dwParam, NeverNull(pbData), &length, dwFlags);
    *pdwDataLen = length;
    return done != FALSE;
  }

  bool CryptDestroyHash(HCRYPTHASH hHash) override { return ::CryptDestroyHash(hHash) != FALSE; }

  bool CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                      std::uint32_t dwFlags, HCRYPTKEY* phKey) override {
    ::HCRYPTKEY key = 0;
    if (::CryptDeriveKey(hProv, Algid, hBaseData, dwFlags, &key) == FALSE) return false;
    *phKey = key;
    return true;
  }

  bool CryptDestroyKey(HCRYPTKEY hKey) override { return ::CryptDestroyKey(hKey) != FALSE; }

  bool CryptDuplicateKey(HCRYPTKEY hKey, std::uint32_t* /*pdwReserved*/, std::uint32_t dwFlags,
                         HCRYPTKEY* phKey) override {
    ::HCRYPTKEY key = 0;
    if (::CryptDuplicateKey(hKey, nullptr, dwFlags, &key) == FALSE) return false;
    *phKey = key;
    return true;
  }

  bool CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam, const std::uint8_t* pbData,
                        std::uint32_t dwFlags) override {
    return ::CryptSetKeyParam(hKey, dwParam, pbData, dwFlags) != FALSE;
  }

  bool CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                    std::uint32_t dwBufLen) override {
    DWORD length = *pdwDataLen;
    const BOOL done = ::CryptEncrypt(hKey, hHash, Final ? TRUE : FALSE, dwFlags, NeverNull(pbData),
                                     &length, dwBufLen);
    *pdwDataLen = length;
    return done != FALSE;
  }

  bool CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                    std::uint8_t* pbData, std::uint32_t* pdwDataLen) override {
    if (IsIncomplete(*pdwDataLen, Final) && IsBlockCipher(hKey)) {
      SetLastError(kErrorBadData);
      return false;
    }
    DWORD length = *pdwDataLen;
    const BOOL done =
        ::CryptDecrypt(hKey, hHash, Final ? TRUE : FALSE, dwFlags, NeverNull(pbData), &length);
    *pdwDataLen = length;
    return done != FALSE;
  }

  bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) override {
    return ::CryptGenRandom(hProv, dwLen, NeverNull(pbBuffer)) != FALSE;
  }

  [[nodiscard]] std::uint32_t GetLastError() const override { return ::GetLastError(); }
};

}  // namespace

CryptoProvider& SystemCryptoProvider() {
  static WindowsCryptoProvider provider;
  return provider;
}

}  // namespace latchkey::provider
