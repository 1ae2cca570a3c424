#include "crypto/open_provider.h"

#include <utility>

#include "crypto/crypto_state.h"

namespace latchkey {
namespace {

constexpr const char* kNoContainer = "";
constexpr const char* kDefaultProviderName = "";

UniqueContext Open(const char* providerName, std::uint32_t flags) {
  ContextTrait::Type context{ThisThreadCrypto().provider};
  const bool opened = context.provider->CryptAcquireContextA(
      &context.value, kNoContainer, providerName, provider::kProviderTypeRsaFull, flags);
  return opened ? UniqueContext(context) : UniqueContext();
}

}  // namespace

UniqueContext OpenProvider(bool enhanced) {
  if (enhanced) return Open(provider::kEnhancedProviderName, provider::kVerifyContext);
  UniqueContext context = Open(provider::kBaseProviderName, provider::kVerifyContext);
  return context ? std::move(context) : Open(kDefaultProviderName, provider::kNewKeySet);
}

}  // namespace latchkey
