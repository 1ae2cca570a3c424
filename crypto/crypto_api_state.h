// The state of a clsCryptoAPI, and the steps that its operations share.
#pragma once

#include <cstdint>
#include <span>

#include "base/wiped_buffer.h"
#include "crypto/password_cipher.h"
#include "crypto/shaped_bytes.h"
#include "latchkey/cls_crypto_api.h"
#include "provider/provider_handles.h"

namespace latchkey {

struct CryptoApiState {
  // Opens the provider that blnEnhanced selects. Returns false if that fails: location 728 or 729,
  // or 442 for a run-time fault.
  bool AcquireProvider();

  // Opens the provider unless it is open. Returns whether it is open now.
  bool HaveProvider();

  // Sets both results from the hash number, to 0 for an unknown number. Records nothing.
  static void GetHashAlgorithm(std::int16_t intHashType, std::int32_t& lngHashLength,
                               provider::AlgorithmId& lngAlgorithm);

  // Clears the record and sets the result from the cipher number. A rejected number gives 0 and
  // location 725 or 726, a run-time fault 0 and location 439.
  void GetCipherAlgorithm(std::int16_t intCipherType, provider::AlgorithmId& lngAlgorithm);

  // Whether a password of at least two elements is stored.
  [[nodiscard]] bool HasPassword() const;

  // The password that CreateHash appends, as text bytes: the stored one, the default one, or random
  // letters. `object` is the object with this state.
  [[nodiscard]] InlineBytes PasswordToAppend(clsCryptoAPI& object) const;

  // The password that a cipher key is derived from, as text bytes. If that is the default password,
  // stores it.
  InlineBytes PasswordForKey();

  // ConvertStringToHex for a text that is given as bytes. Sets `result`, or leaves it empty on
  // failure.
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
