// The provider's calls that a client without the component would make.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>

#include "crypto/algorithms.h"
#include "crypto/open_provider.h"
#include "provider/provider_handles.h"

namespace latchkey::bench {

class RawProvider {
 public:
  [[nodiscard]] provider::HCRYPTHASH MakeHash(provider::AlgorithmId algorithm,
                                              std::span<const std::uint8_t> data) {
    provider::HCRYPTHASH hash = 0;
    Require(provider().CryptCreateHash(context(), algorithm, 0, 0, &hash));
    Require(
        provider().CryptHashData(hash, data.data(), static_cast<std::uint32_t>(data.size()), 0));
    return hash;
  }

  [[nodiscard]] provider::HCRYPTKEY MakeKey(provider::AlgorithmId cipher,
                                            std::span<const std::uint8_t> password) {
    const provider::HCRYPTHASH hash = MakeHash(FindHashAlgorithm(kMd5).id, password);
    provider::HCRYPTKEY key = 0;
    Require(provider().CryptDeriveKey(context(), cipher, hash, 0, &key));
    Require(provider().CryptDestroyHash(hash));
    return key;
  }

  provider::CryptoProvider& provider() { return *context_.Get().provider; }

  static void Require(bool done) {
    if (!done) throw std::runtime_error("a call of the provider failed");
  }

  static constexpr std::int16_t kMd5 = 1;

 private:
  provider::HCRYPTPROV context() { return context_.Get().value; }

  UniqueContext context_ = OpenProvider(true);
};

}  // namespace latchkey::bench
