// The key that each provider derives from a hash value for each cipher, with the lengths of
// CryptDeriveKey on Windows XP and later.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "provider/portable/hash_object.h"

namespace latchkey::provider {

enum class ProviderKind { Base, Enhanced };

struct KeyForm {
  std::size_t derivedBytes;  // taken from the hash value
  std::size_t cipherBytes;   // length of the cipher's key, padded with zeros
  unsigned effectiveBits;    // RC2's effective key length; 0 for other ciphers
};

// Nothing for a cipher that the provider lacks.
[[nodiscard]] std::optional<KeyForm> KeyFormOf(ProviderKind provider, AlgorithmId cipher) noexcept;

// The same with a key of `bits` bits. RC4 and RC2 take 40 to 56, with the enhanced provider to 128,
// in steps of 8; nothing for others.
[[nodiscard]] std::optional<KeyForm> KeyFormOf(ProviderKind provider, AlgorithmId cipher,
                                               unsigned bits) noexcept;

// Whether RC2's effective key length may be set to `bits`: the base provider allows only 40.
[[nodiscard]] bool AllowsEffectiveBits(ProviderKind provider, std::uint32_t bits) noexcept;

// The cipher's key, `form.cipherBytes` long. Completes the hash. A hash value shorter than the key
// is expanded as Microsoft documents it for CryptDeriveKey.
[[nodiscard]] WipedBytes DeriveKey(HashObject& hash, const KeyForm& form);

}  // namespace latchkey::provider
