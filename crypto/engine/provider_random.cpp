#include "crypto/engine/provider_random.h"

#include "base/checked_arithmetic.h"

namespace latchkey {

bool ProviderRandom::Fill(std::span<std::uint8_t> bytes) {
  const auto length = NarrowTo<std::uint32_t>(bytes.size());
  return context_.Get().provider->CryptGenRandom(context_.Get().value, length, bytes.data());
}

}  // namespace latchkey
