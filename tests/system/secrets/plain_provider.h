// A provider that keeps no copies of its arguments.
#pragma once

#include "provider/crypto_provider.h"
#include "tests/system/secrets/secret.h"

namespace latchkey::test {

// Replaces the system's provider, which may leave data in its own memory. Ciphers invert every bit;
// all digests are the same random one.
class PlainProvider final : public provider::CryptoProvider {
 public:
  using HCRYPTPROV = provider::HCRYPTPROV;
  using HCRYPTHASH = provider::HCRYPTHASH;
  using HCRYPTKEY = provider::HCRYPTKEY;
  using AlgorithmId = provider::AlgorithmId;

  bool CryptAcquireContextA(HCRYPTPROV* phProv, const char*, const char*, std::uint32_t,
                            std::uint32_t) override {
    return Give(phProv);
  }
  bool CryptReleaseContext(HCRYPTPROV, std::uint32_t) override { return true; }
  bool CryptCreateHash(HCRYPTPROV, AlgorithmId, HCRYPTKEY, std::uint32_t,
                       HCRYPTHASH* phHash) override {
    return Give(phHash);
  }
  bool CryptHashData(HCRYPTHASH, const std::uint8_t*, std::uint32_t, std::uint32_t) override {
    return true;
  }
  bool CryptGetHashParam(HCRYPTHASH, std::uint32_t, std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                         std::uint32_t) override {
    digest_.CopyTo(std::span(pbData, *pdwDataLen));
    return true;
  }
  bool CryptDestroyHash(HCRYPTHASH) override { return true; }
  bool CryptDeriveKey(HCRYPTPROV, AlgorithmId, HCRYPTHASH, std::uint32_t,
                      HCRYPTKEY* phKey) override {
    return Give(phKey);
  }
  bool CryptDestroyKey(HCRYPTKEY) override { return true; }
  bool CryptSetKeyParam(HCRYPTKEY, std::uint32_t, const std::uint8_t*, std::uint32_t) override {
    return true;
  }
  bool CryptEncrypt(HCRYPTKEY, HCRYPTHASH, bool, std::uint32_t, std::uint8_t* pbData,
                    std::uint32_t* pdwDataLen, std::uint32_t) override {
    return TurnOver(std::span(pbData, *pdwDataLen));
  }
  bool CryptDecrypt(HCRYPTKEY, HCRYPTHASH, bool, std::uint32_t, std::uint8_t* pbData,
                    std::uint32_t* pdwDataLen) override {
    return TurnOver(std::span(pbData, *pdwDataLen));
  }
  bool CryptGenRandom(HCRYPTPROV, std::uint32_t, std::uint8_t*) override { return true; }
  [[nodiscard]] std::uint32_t GetLastError() const override { return 0; }

 private:
  bool Give(std::uintptr_t* handle) noexcept {
    *handle = ++last_;
    return true;
  }
  static bool TurnOver(std::span<std::uint8_t> data) noexcept {
    for (std::uint8_t& byte : data) byte = static_cast<std::uint8_t>(~byte);
    return true;
  }

  const Secret digest_ = Secret::Random(20);
  std::uintptr_t last_ = 0;
};

}  // namespace latchkey::test
