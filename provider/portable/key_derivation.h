// Which key each provider makes of a hash value for each cipher: the lengths of CryptDeriveKey with
// flags 0, as Windows XP and later have them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "provider/portable/hash_object.h"

namespace latchkey::provider {

enum class ProviderKind { Base, Enhanced };

struct KeyForm {
  std::size_t derivedBytes;  // taken from the hash value
  std::size_t cipherBytes;   // length of the cipher's key; zeros fill it up
  unsigned effectiveBits;    // RC2's effective key length; 0 for other ciphers
};

// Nothing for a cipher that the provider does not have.
[[nodiscard]] std::optional<KeyForm> KeyFormOf(ProviderKind provider, AlgorithmId cipher) noexcept;

// Whether RC2's effective key length may be set to that: the base provider keeps its 40 bits.
[[nodiscard]] bool AllowsEffectiveBits(ProviderKind provider, std::uint32_t bits) noexcept;

// The cipher's key, `form.cipherBytes` long. Completes the hash. A hash value shorter than the key
// is expanded as Microsoft documents it for CryptDeriveKey.
[[nodiscard]] WipedBytes DeriveKey(HashObject& hash, const KeyForm& form);

}  // namespace latchkey::provider
