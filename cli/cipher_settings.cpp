#include "cli/cipher_settings.h"

#include "cli/failure.h"
#include "crypto/algorithms.h"
#include "crypto/open_provider.h"

namespace latchkey::cli {

bool NeedsEnhancedProvider(std::int16_t cipher, std::uint32_t rc2EffectiveBits) {
  return rc2EffectiveBits != 0 || FindCipherAlgorithm(cipher, false) == provider::kAlgorithmNone;
}

KeyRequest RequestOf(const CipherSettings& settings, std::span<const std::uint8_t> password) {
  return {FindHashAlgorithm(settings.hash).id,
          FindCipherAlgorithm(settings.cipher, settings.enhanced), password,
          settings.rc2EffectiveBits};
}

PasswordKey DeriveKey(const UniqueContext& context, const KeyRequest& request,
                      const CipherSites& sites, const std::string& file) {
  PasswordKey key;
  const CipherStep step = key.Derive(context, request);
  if (step != CipherStep::Done) throw CommandError(FailureAt(sites.SiteOf(step), file));
  return key;
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
