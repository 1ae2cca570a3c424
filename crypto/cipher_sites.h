// The locations at which encryption and decryption report their failures. All code that runs a
// password cipher uses these.
#pragma once

#include "crypto/password_cipher.h"
#include "diagnostics/failure_table.h"

namespace latchkey {

struct CipherSites {
  const TrapSite& trap;
  const CheckSite& hashType;
  const CheckSite& cipherType;
  const CheckSite& provider;
  const CheckSite& hash;
  const CheckSite& hashData;
  const CheckSite& key;
  const CheckSite& cipher;

  // The check of a step that failed.
  [[nodiscard]] constexpr const CheckSite& SiteOf(CipherStep step) const noexcept {
    switch (step) {
      case CipherStep::CreateHash:
        return hash;
      case CipherStep::HashData:
        return hashData;
      case CipherStep::DeriveKey:
        return key;
      default:
        return cipher;
    }
  }
};

inline constexpr CipherSites kEncryptionSites{trap::kEncryptData,        check::kEncryptHashType,
                                              check::kEncryptCipherType, check::kEncryptProvider,
                                              check::kEncryptHash,       check::kEncryptHashData,
                                              check::kEncryptKey,        check::kEncryptCipher};

inline constexpr CipherSites kDecryptionSites{trap::kDecryptData,        check::kDecryptHashType,
                                              check::kDecryptCipherType, check::kDecryptProvider,
                                              check::kDecryptHash,       check::kDecryptHashData,
                                              check::kDecryptKey,        check::kDecryptCipher};

[[nodiscard]] constexpr const CipherSites& SitesOf(CipherDirection direction) noexcept {
  return direction == CipherDirection::Encrypt ? kEncryptionSites : kDecryptionSites;
}

}  // namespace latchkey
