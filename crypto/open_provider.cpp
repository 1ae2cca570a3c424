#include "crypto/open_provider.h"

#include <utility>

#include "crypto/crypto_state.h"

namespace latchkey {
namespace {

constexpr const char* kNoContainer = "";
constexpr const char* kDefaultProviderName = "";

UniqueContext Open(const char* providerName, std::uint32_t flags) {
  provider::CryptoProvider& provider = *ThisThreadCrypto().provider;
  return Receive<ContextTrait>(provider, [&](provider::HCRYPTPROV* context) {
    return provider.CryptAcquireContextA(context, kNoContainer, providerName,
                                         provider::kProviderTypeRsaFull, flags);
  });
}

}  // namespace

UniqueContext OpenProvider(bool enhanced) {
  if (enhanced) return Open(provider::kEnhancedProviderName, provider::kVerifyContext);
  UniqueContext context = Open(provider::kBaseProviderName, provider::kVerifyContext);
  return context ? std::move(context) : Open(kDefaultProviderName, provider::kNewKeySet);
}

}  // namespace latchkey
