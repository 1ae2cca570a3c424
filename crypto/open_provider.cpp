#include "crypto/open_provider.h"

#include <utility>

#include "diagnostics/module_data.h"

namespace latchkey {
namespace {

constexpr const char* kNoContainer = "";
constexpr const char* kDefaultProviderName = "";

UniqueContext Open(const char* providerName, std::uint32_t flags) {
  ContextTrait::Type context{ThreadModuleData().services.provider};
  const bool opened = context.provider->CryptAcquireContextA(
      &context.value, kNoContainer, providerName, platform::kProviderTypeRsaFull, flags);
  return opened ? UniqueContext(context) : UniqueContext();
}

}  // namespace

UniqueContext OpenProvider(bool enhanced) {
  if (enhanced) return Open(platform::kEnhancedProviderName, platform::kVerifyContext);
  UniqueContext context = Open(platform::kBaseProviderName, platform::kVerifyContext);
  return context ? std::move(context) : Open(kDefaultProviderName, platform::kNewKeySet);
}

}  // namespace latchkey
