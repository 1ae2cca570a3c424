// What a clsCryptoAPI holds, and the steps that its operations share.
#pragma once

#include <cstdint>
#include <span>

#include "base/secure_memory.h"
#include "base/wiped_buffer.h"
#include "crypto/password_cipher.h"
#include "crypto/provider_handles.h"
#include "crypto/shaped_bytes.h"
#include "latchkey/cls_crypto_api.h"

namespace latchkey {

struct CryptoApiState {
  // Opens the provider that blnEnhanced asks for. False when it cannot: location 728 or 729, 442
  // for a run-time fault.
  bool AcquireProvider();

  // True when the provider is open or could be opened.
  bool HaveProvider();

  // Sets both results from the hash number; 0 for an unknown one. Records nothing.
  static void GetHashAlgorithm(std::int16_t intHashType, std::int32_t& lngHashLength,
                               provider::AlgorithmId& lngAlgorithm);

  // Clears the record and sets the result from the cipher number; 0 for a rejected one, location
  // 725 or 726, 439 for a run-time fault.
  void GetCipherAlgorithm(std::int16_t intCipherType, provider::AlgorithmId& lngAlgorithm);

  // Whether a password of at least two elements is stored.
  [[nodiscard]] bool HasPassword() const;

  // The password that CreateHash of `object`, whose state this is, appends, as text bytes: the
  // stored one, the default one, or random letters.
  [[nodiscard]] InlineBytes PasswordToAppend(clsCryptoAPI& object) const;

  // The password that a cipher key is derived from, as text bytes. Stores the default password
  // where it is used.
  InlineBytes PasswordForKey();

  // ConvertStringToHex of text that is there as its bytes: sets `result`, or leaves it empty.
  static void ConvertCodesToHex(std::span<const std::uint8_t> codes, Text& result);

  bool TransformData(CipherDirection direction, std::int16_t intHashType,
                     std::int16_t intCipherType);

  bool blnEnhanced = false;
  bool blnBlockCipher = false;
  bool blnDefaultPWD = true;
  UniqueContext hCryptProv;
  InlineBytes strInData;  // text, as its code-page bytes
  ShapedBytes arOutData;
  ShapedBytes arPassword{0};
};

}  // namespace latchkey
