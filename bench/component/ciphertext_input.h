// Input for an object's Decrypt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "latchkey/cls_crypto_api.h"

namespace latchkey::bench {

inline ByteArray Letters(std::size_t length, std::uint8_t letter = 'a') {
  return ByteArray::WithTrailingZero(std::vector<std::uint8_t>(length, letter));
}

// Sets InputData to the ciphertext of `length` equal letters. Returns false if Encrypt fails. Tries
// letters until the ciphertext does not end in a space, which InputData would lose.
inline bool SetCiphertext(clsCryptoAPI& api, std::int16_t hash, std::int16_t cipher,
                          std::size_t length) {
  for (std::uint8_t letter = 'a'; letter <= 'z'; ++letter) {
    api.InputData(Letters(length, letter));
    if (!api.Encrypt(hash, cipher)) return false;
    const ByteArray output = api.OutputData();
    const auto codes = output.TextElements();
    if (!codes.empty() && codes.back() == ' ') continue;
    api.InputData(output);
    return true;
  }
  return false;
}

}  // namespace latchkey::bench
