// The provider's calls as a client without the component would make them.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>

#include "crypto/algorithms.h"
#include "crypto/open_provider.h"
#include "crypto/provider_handles.h"

namespace latchkey::bench {

class RawProvider {
 public:
  [[nodiscard]] platform::HCRYPTHASH MakeHash(platform::AlgorithmId algorithm,
                                              std::span<const std::uint8_t> data) {
    platform::HCRYPTHASH hash = 0;
    Require(provider().CryptCreateHash(context(), algorithm, 0, 0, &hash));
    Require(
        provider().CryptHashData(hash, data.data(), static_cast<std::uint32_t>(data.size()), 0));
    return hash;
  }

  [[nodiscard]] platform::HCRYPTKEY MakeKey(platform::AlgorithmId cipher,
                                            std::span<const std::uint8_t> password) {
    const platform::HCRYPTHASH hash = MakeHash(FindHashAlgorithm(kMd5).id, password);
    platform::HCRYPTKEY key = 0;
    Require(provider().CryptDeriveKey(context(), cipher, hash, 0, &key));
    Require(provider().CryptDestroyHash(hash));
    return key;
  }

  platform::CryptoProvider& provider() { return *context_.Get().provider; }

  static void Require(bool done) {
    if (!done) throw std::runtime_error("the provider refuses");
  }

  static constexpr std::int16_t kMd5 = 1;

 private:
  platform::HCRYPTPROV context() { return context_.Get().value; }

  UniqueContext context_ = OpenProvider(true);
};

}  // namespace latchkey::bench
