// Provider, hash and cipher of a key, and the key derived with them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "crypto/cipher_sites.h"
#include "crypto/provider_handles.h"

namespace latchkey::cli {

struct CipherSettings {
  bool enhanced = false;
  std::int16_t hash = 1;               // number of the component
  std::int16_t cipher = 1;             // number of the component
  std::uint32_t rc2EffectiveBits = 0;  // 0 leaves it to the provider
};

// The provider that allows the cipher, and the base provider if both do. RC2's effective bits, if
// given, require the enhanced provider, since only it can set them.
[[nodiscard]] bool NeedsEnhancedProvider(std::int16_t cipher, std::uint32_t rc2EffectiveBits);

// The request for the key of these settings. The provider must have the algorithms.
[[nodiscard]] KeyRequest RequestOf(const CipherSettings& settings,
                                   std::span<const std::uint8_t> password);

// Derives a key. Raises CommandError with the site of the step that failed, about `file`.
// `context` is the provider of the settings.
[[nodiscard]] PasswordKey DeriveKey(const UniqueContext& context, const KeyRequest& request,
                                    const CipherSites& sites, const std::string& file);

// Opens the provider of the settings. Raises CommandError if the provider does not allow the cipher
// or cannot be opened.
[[nodiscard]] UniqueContext OpenFor(const CipherSettings& settings, const CipherSites& sites,
                                    const std::string& file);

}  // namespace latchkey::cli
