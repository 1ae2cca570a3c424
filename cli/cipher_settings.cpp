#include "cli/cipher_settings.h"

#include "cli/failure.h"
#include "crypto/algorithms.h"
#include "crypto/open_provider.h"

namespace latchkey::cli {

bool NeedsEnhancedProvider(std::int16_t cipher, std::uint32_t rc2EffectiveBits) {
  return rc2EffectiveBits != 0 || FindCipherAlgorithm(cipher, false) == provider::kAlgorithmNone;
}

void DeriveKey(PasswordCipher& cipher, const CipherSettings& settings, const CipherSites& sites,
               std::span<const std::uint8_t> password, const std::string& file) {
  const CipherStep step = cipher.DeriveKey(FindHashAlgorithm(settings.hash).id,
                                           FindCipherAlgorithm(settings.cipher, settings.enhanced),
                                           password, settings.rc2EffectiveBits);
  if (step != CipherStep::Done) throw CommandError(FailureAt(sites.SiteOf(step), file));
}

UniqueContext OpenFor(const CipherSettings& settings, const CipherSites& sites,
                      const std::string& file) {
  if (FindCipherAlgorithm(settings.cipher, settings.enhanced) == provider::kAlgorithmNone) {
    throw CommandError(FailureAt(sites.cipherType, file));
  }
  UniqueContext context = OpenProvider(settings.enhanced);
  if (!context) throw CommandError(FailureAt(sites.provider, file));
  return context;
}

}  // namespace latchkey::cli
