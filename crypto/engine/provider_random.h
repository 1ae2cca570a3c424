// The provider's random bytes.
#pragma once

#include <cstdint>
#include <span>

#include "base/checked_arithmetic.h"
#include "crypto/open_provider.h"

namespace latchkey {

// Opened with the object.
class ProviderRandom {
 public:
  [[nodiscard]] bool IsOpen() const noexcept { return static_cast<bool>(context_); }

  // False if the provider refuses. Raises Overflow for 4 GiB or more.
  [[nodiscard]] bool Fill(std::span<std::uint8_t> bytes) {
    const auto length = NarrowTo<std::uint32_t>(bytes.size());
    return context_.Get().provider->CryptGenRandom(context_.Get().value, length, bytes.data());
  }

 private:
  UniqueContext context_ = OpenSharedProvider(false);
};

}  // namespace latchkey
