// Which provider, hash and cipher make a key, and the key made with them.
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

// The provider that allows the cipher, and the base provider where both do. Only the enhanced
// provider lets RC2's effective bits be set, so it serves where they are given.
[[nodiscard]] bool NeedsEnhancedProvider(std::int16_t cipher, std::uint32_t rc2EffectiveBits);

// The key that the settings make of the password. The algorithms must be ones of the provider.
[[nodiscard]] KeyRequest RequestOf(const CipherSettings& settings,
                                   std::span<const std::uint8_t> password);

// Derives a key. Raises CommandError with the site of the step that failed; `file` is what the
// failure is about. `context` is the provider that the settings name.
[[nodiscard]] PasswordKey DeriveKey(const UniqueContext& context, const KeyRequest& request,
                                    const CipherSites& sites, const std::string& file);

// The provider that the settings ask for; raises CommandError when the settings' cipher is not
// allowed there or it cannot be opened.
[[nodiscard]] UniqueContext OpenFor(const CipherSettings& settings, const CipherSites& sites,
                                    const std::string& file);

}  // namespace latchkey::cli
