#include "crypto/open_provider.h"

#include <utility>

#include "crypto/crypto_state.h"

namespace latchkey {
namespace {

constexpr const char* kNoContainer = "";
constexpr const char* kDefaultProviderName = "";

UniqueContext Open(provider::CryptoProvider& provider, const char* providerName,
                   std::uint32_t flags) {
  return Receive<ContextTrait>(provider, [&](provider::HCRYPTPROV* context) {
    return provider.CryptAcquireContextA(context, kNoContainer, providerName,
                                         provider::kProviderTypeRsaFull, flags);
  });
}

UniqueContext Open(provider::CryptoProvider& provider, bool enhanced) {
  if (enhanced) return Open(provider, provider::kEnhancedProviderName, provider::kVerifyContext);
  UniqueContext context = Open(provider, provider::kBaseProviderName, provider::kVerifyContext);
  return context ? std::move(context) : Open(provider, kDefaultProviderName, provider::kNewKeySet);
}

}  // namespace

UniqueContext OpenProvider(bool enhanced) { return Open(*ThisThreadCrypto().provider, enhanced); }

UniqueContext OpenSharedProvider(bool enhanced) {
  return Open(provider::SharedCryptoProvider(), enhanced);
}

}  // namespace latchkey
